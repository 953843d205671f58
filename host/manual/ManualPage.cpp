#include "host/manual/ManualPage.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace VelkHost {
namespace {

/// The text as it is: nothing in it is a request, and what can be copied from a terminal stays ASCII.
std::string roff(const std::string& text)
{
    std::string result = text.starts_with('.') ? "\\&" : "";
    for (const char character : text) {
        switch (character) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '"':
                result += "\\(dq";
                break;
            case '`':
                result += "\\(ga";
                break;
            case '^':
                result += "\\(ha";
                break;
            case '~':
                result += "\\(ti";
                break;
            default:
                result += character;
        }
    }
    return result;
}

std::string bold(const std::string& text)
{
    return "\\fB" + roff(text) + "\\fR";
}

std::string italic(const std::string& text)
{
    return "\\fI" + roff(text) + "\\fR";
}

/// What a program says of itself, without its name and the dash.
std::string withoutName(const CommandDescription& program)
{
    const std::string beginning = program.name + " - ";
    return program.summary.starts_with(beginning) ? program.summary.substr(beginning.size()) : program.summary;
}

std::string nameAndValue(const ArgumentDescription& option)
{
    std::string text;
    for (const std::string& name : option.names)
        text += (text.empty() ? "" : ", ") + bold(name);
    return option.value.empty() ? text : text + " " + italic(option.value);
}

/// "velk search [OPTION...] [TEXT...]"; what is required has no brackets.
std::string usage(const CommandDescription& command, const std::string& typed)
{
    std::string text = bold(typed);
    bool optional = false;
    for (const ArgumentDescription& option : command.options) {
        if (option.required)
            text += " " + bold(option.names.front()) + " " + italic(option.value);
        optional = optional || !option.required;
    }
    if (optional)
        text += " [" + italic("OPTION") + "...]";
    for (const ArgumentDescription& place : command.places) {
        const std::string name = italic(place.value) + (place.repeated ? "..." : "");
        text += " " + (place.required ? name : "[" + name + "]");
    }
    return command.commands.empty() ? text : text + " " + italic("COMMAND");
}

/// " (one, two)" where the help has not named them all.
std::string choices(const ArgumentDescription& argument)
{
    std::string text;
    bool named = true;
    for (const std::string& choice : argument.choices) {
        named = named && argument.help.find(choice) != std::string::npos;
        text += (text.empty() ? "" : ", ") + bold(choice);
    }
    return named ? std::string() : " (" + text + ")";
}

std::string item(const std::string& what, const ArgumentDescription& argument)
{
    return ".TP\n" + what + "\n" + roff(argument.help) + choices(argument) + "\n";
}

std::string items(const CommandDescription& command, bool withHelp)
{
    std::string text;
    for (const ArgumentDescription& place : command.places)
        text += item(italic(place.value), place);
    for (const ArgumentDescription& option : command.options)
        if (withHelp || option.names.back() != "--help")
            text += item(nameAndValue(option), option);
    return text;
}

/// Prose is filled; indented lines are shown as they are.
std::string paragraphs(const std::string& notes)
{
    std::string text;
    std::istringstream lines(notes);
    bool example = false;
    bool begun = false;
    for (std::string line; std::getline(lines, line); begun = !line.empty()) {
        const bool indented = line.starts_with(' ');
        if (example != indented)
            text += indented ? (begun ? ".br\n.EX\n" : ".PP\n.EX\n") : ".EE\n";
        else if (!begun)
            text += ".PP\n";
        example = indented;
        if (!line.empty())
            text += roff(line) + "\n";
    }
    return example ? text + ".EE\n" : text;
}

void addCommands(const CommandDescription& command, const std::string& typed, std::string& text)
{
    for (const CommandDescription& part : command.commands) {
        const std::string name = typed + " " + part.name;
        text += ".SS " + name + "\n" + usage(part, name) + "\n.PP\n" + roff(part.summary) + ".\n";
        text += items(part, false) + paragraphs(part.notes);
        addCommands(part, name, text);
    }
}

std::string inCapitals(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    return text;
}

}  // namespace

std::string manualPage(const CommandDescription& program, const std::string& version,
                       const std::vector<std::string>& others)
{
    const std::string about = withoutName(program);
    std::string text = ".TH " + inCapitals(program.name) + " 1 \"\" \"" + program.name + " " + version +
                       "\" \"User Commands\"\n.SH NAME\n" + program.name + " \\- " + roff(about) + "\n.SH SYNOPSIS\n" +
                       usage(program, program.name) + "\n.SH DESCRIPTION\n" + bold(program.name) + ": " + roff(about) +
                       ".\n.SH OPTIONS\n" + items(program, true);
    if (!program.commands.empty()) {
        text += ".SH COMMANDS\n";
        addCommands(program, program.name, text);
    }
    text += ".SH EXAMPLES\n" + paragraphs(program.notes);
    for (const std::string& other : others)
        text += (&other == &others.front() ? ".SH SEE ALSO\n" : ",\n") + bold(other) + "(1)";
    return others.empty() ? text : text + "\n";
}

}  // namespace VelkHost
