#include "host/manual/Completions.h"
#include "host/manual/ShellText.h"

namespace VelkHost {
namespace {

constexpr const char* functions = R"(# fish completion for PROGRAM

function _FUNCTION_in --description 'Whether the words typed so far begin with these commands'
    set -l words (commandline -opc)
    set -e words[1]
    test (count $argv) -eq 0; or test "$words[1..$(count $argv)]" = "$argv"
end

function _FUNCTION_next --description 'Whether a command can follow these'
    set -l words (commandline -opc)
    test (count $words) -eq (math (count $argv) + 1); and _FUNCTION_in $argv
end

complete -c PROGRAM -f
)";

std::string inQuotes(const std::string& text)
{
    return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

std::string files(const std::vector<std::string>& extensions)
{
    if (extensions.empty())
        return " -F";
    std::string calls;
    for (const std::string& extension : extensions)
        calls += (calls.empty() ? "" : "; ") + ("__fish_complete_suffix ." + extension);
    return " -f -k -a '(" + calls + ")'";
}

std::string offered(const ArgumentDescription& argument)
{
    if (!argument.choices.empty())
        return " -f -a " + inQuotes(joined(argument.choices));
    if (argument.kind == ValueKind::Folder)
        return " -f -a '(__fish_complete_directories)'";
    return argument.kind == ValueKind::File ? files(argument.extensions) : " -f";
}

std::string namesOf(const ArgumentDescription& option)
{
    std::string text;
    for (const std::string& name : option.names)
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    return text;
}

/// `complete` is the beginning of a line, and `function` that of the functions' names.
std::string linesOf(const NestedCommand& command, const std::string& complete, const std::string& function)
{
    const std::string next = complete + inQuotes(joined(function + "_next", command.words));
    // Options of a program with commands come before those; without commands, its arguments are everywhere.
    const bool isGroup = command.words.empty() && !command.description->commands.empty();
    const std::string in = isGroup ? next : complete + inQuotes(joined(function + "_in", command.words));
    std::string text = "\n";
    for (const CommandDescription& part : command.description->commands)
        text += next + " -a " + part.name + " -d " + inQuotes(part.summary) + "\n";
    for (const ArgumentDescription& option : command.description->options)
        text += in + namesOf(option) + (option.values > 0 ? " -r" : "") + offered(option) + " -d " +
                inQuotes(option.help) + "\n";
    for (const ArgumentDescription& place : command.description->places)
        text += in + offered(place) + " -d " + inQuotes(place.value) + "\n";
    return text;
}

}  // namespace

std::string fishCompletion(const CommandDescription& program)
{
    const std::string function = "_" + shellFunction(program.name);
    std::string text = functions;
    for (const NestedCommand& command : allCommands(program))
        text += linesOf(command, "complete -c " + program.name + " -n ", function);
    return replaced(replaced(text, "_FUNCTION", function), "PROGRAM", program.name);
}

}  // namespace VelkHost
