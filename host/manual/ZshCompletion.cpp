#include "host/manual/Completions.h"
#include "host/manual/ShellText.h"

namespace VelkHost {
namespace {

/// A text inside single quotes, in a place where colons and brackets have a meaning.
std::string specification(const std::string& text)
{
    std::string result;
    for (const char character : text) {
        if (character == '\'')
            result += "'\\'";
        else if (character == ':' || character == '[' || character == ']' || character == '\\')
            result += '\\';
        result += character;
    }
    return result;
}

std::string action(const ArgumentDescription& argument)
{
    if (!argument.choices.empty())
        return "(" + joined(argument.choices) + ")";
    if (argument.kind == ValueKind::Folder)
        return "_files -/";
    if (argument.kind != ValueKind::File)
        return " ";
    std::string patterns;
    for (const std::string& extension : argument.extensions)
        patterns += (patterns.empty() ? "" : " ") + ("*." + extension);
    return patterns.empty() ? "_files" : "_files -g \"" + patterns + "\"";
}

std::string valueOf(const ArgumentDescription& argument)
{
    return ":" + specification(argument.value) + ":" + action(argument);
}

/// '(-l --library)'{-l,--library}'[help]:PATH:_files'; a repeated option does not exclude itself.
std::string optionLine(const ArgumentDescription& option)
{
    std::string what = "'[" + specification(option.help) + "]";
    for (int value = 0; value < option.values; ++value)
        what += valueOf(option);
    what += "'";
    const std::string all = joined(option.names);
    const bool several = option.names.size() > 1;
    const std::string names = several ? "{" + replaced(all, " ", ",") + "}" : option.names.front();
    const std::string before = option.repeated ? "'*'" : several ? "'(" + all + ")'" : "";
    return " \\\n        " + before + names + what;
}

std::string placeLine(const ArgumentDescription& place)
{
    return " \\\n        '" + std::string(place.repeated ? "*" : "") + valueOf(place) + "'";
}

/// Offers the commands, and leaves what follows one to its own function.
std::string choiceOfCommands(const CommandDescription& command, const std::string& function)
{
    std::string names;
    std::string calls;
    for (const CommandDescription& part : command.commands) {
        names += "                '" + specification(part.name) + ":" + specification(part.summary) + "'\n";
        calls += "                " + part.name + ") " + shellFunction(function.substr(1) + " " + part.name) + " ;;\n";
    }
    return "    case $state in\n        command)\n            commands=(\n" + names +
           "            )\n            _describe command commands\n            ;;\n"
           "        arguments)\n            case $words[1] in\n" +
           calls + "            esac\n            ;;\n    esac\n";
}

std::string functionOf(const CommandDescription& command, const std::string& function)
{
    std::string text = function +
                       "()\n{\n    local curcontext=\"$curcontext\" state line\n    local -a commands\n"
                       "    _arguments -C -S";
    for (const ArgumentDescription& option : command.options)
        text += optionLine(option);
    for (const ArgumentDescription& place : command.places)
        text += placeLine(place);
    if (command.commands.empty())
        return text + "\n}\n\n";
    return text + " \\\n        '1: :->command' \\\n        '*:: :->arguments'\n" +
           choiceOfCommands(command, function) + "}\n\n";
}

}  // namespace

std::string zshCompletion(const CommandDescription& program)
{
    std::string text = "#compdef " + program.name + "\n\n";
    for (const NestedCommand& command : allCommands(program))
        text += functionOf(*command.description, shellFunction(joined(program.name, command.words)));
    return text + shellFunction(program.name) + " \"$@\"\n";
}

}  // namespace VelkHost
