#include "host/manual/Completions.h"
#include "host/manual/ShellText.h"

namespace VelkHost {
namespace {

/// Works out what is being typed: FUNCTION_what says where, and the cases below it what can stand there. A value behind
/// "=" comes as a word of its own.
constexpr const char* beginning = R"(# bash completion for PROGRAM

# Offers folders, and files with one of these extensions, or all files.
FUNCTION_files()
{
    local extension
    compopt -o filenames 2>/dev/null
    if (($# == 0)); then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    mapfile -t COMPREPLY < <(
        compgen -d -- "$current"
        for extension in "$@"; do compgen -f -X "!*.$extension" -- "$current"; done | sort -u
    )
}

FUNCTION_folders()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
}

FUNCTION_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

FUNCTION()
{
    local current=${COMP_WORDS[COMP_CWORD]} command="" option="" values=0 place=0 word i
    COMPREPLY=()
    if [[ $current == "=" ]]; then current=""; fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == "=" ]]; then continue; fi
        if ((values > 0)); then
            values=$((values - 1))
            continue
        fi
        case "$command $word" in
)";

constexpr const char* middle = R"(            *" -"*) ;;
            *) place=$((place + 1)) ;;
        esac
    done
    word="$command $place"
    if ((values > 0)); then
        word="$command $option"
    elif [[ $current == -* ]]; then
        word="$command -"
    fi
    case $word in
)";

constexpr const char* end = R"(    esac
}

complete -F FUNCTION PROGRAM
)";

using Commands = std::vector<NestedCommand>;

/// "search --library" | "search -l"
std::string pattern(const std::string& command, const ArgumentDescription& option)
{
    std::string text;
    for (const std::string& name : option.names) {
        text += text.empty() ? "\"" : " | \"";
        text.append(command).append(" ").append(name).append("\"");
    }
    return text;
}

/// What changes the place: commands, and options that take a value.
std::string words(const Commands& commands)
{
    std::string text;
    for (const NestedCommand& command : commands) {
        for (const CommandDescription& part : command.description->commands)
            text += "            \"" + command.words + " " + part.name + "\") command=\"" +
                    joined(command.words, part.name) + "\" ;;\n";
        for (const ArgumentDescription& option : command.description->options)
            if (option.values > 0)
                text += "            " + pattern(command.words, option) +
                        ") option=$word values=" + std::to_string(option.values) + " ;;\n";
    }
    return text;
}

/// The call that offers values; empty where there is nothing to offer.
std::string offer(const std::string& function, const ArgumentDescription& argument)
{
    if (!argument.choices.empty())
        return function + "_words " + joined(argument.choices);
    if (argument.kind == ValueKind::Folder)
        return function + "_folders";
    if (argument.kind == ValueKind::File)
        return function + "_files" + (argument.extensions.empty() ? "" : " ") + joined(argument.extensions);
    return {};
}

std::string caseOf(const std::string& patterns, const std::string& call)
{
    return call.empty() ? std::string() : "        " + patterns + ") " + call + " ;;\n";
}

std::string values(const std::string& function, const NestedCommand& command)
{
    const CommandDescription& description = *command.description;
    std::string text;
    for (const ArgumentDescription& option : description.options)
        if (option.values > 0)
            text += caseOf(pattern(command.words, option), offer(function, option));
    text += caseOf("\"" + command.words + " -\"", function + "_words " + joined(optionNames(description)));
    if (!description.commands.empty())
        text += caseOf("\"" + command.words + " 0\"", function + "_words " + joined(commandNames(description)));
    // Behind the others, as several arguments may be at any place.
    for (std::size_t place = 0; place < description.places.size(); ++place) {
        const ArgumentDescription& argument = description.places[place];
        const std::string which = argument.repeated ? " \"*" : " " + std::to_string(place) + "\"";
        text += caseOf("\"" + command.words + which, offer(function, argument));
    }
    return text;
}

}  // namespace

std::string bashCompletion(const CommandDescription& program)
{
    const std::string function = shellFunction(program.name);
    const Commands commands = allCommands(program);
    std::string text = beginning + words(commands) + middle;
    for (const NestedCommand& command : commands)
        text += values(function, command);
    text += end;
    return replaced(replaced(text, "FUNCTION", function), "PROGRAM", program.name);
}

}  // namespace VelkHost
