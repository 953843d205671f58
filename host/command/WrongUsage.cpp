#include "host/command/WrongUsage.h"

#include "host/support/DisplayText.h"
#include "host/support/ParserArguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <numeric>
#include <utility>

namespace VelkHost {
namespace {

using Names = std::vector<std::string>;

std::string quoted(const std::string& text)
{
    return "\"" + printableUtf8(text) + "\"";
}

/// The command as it is typed: "velk filter show".
std::string commandLine(const CLI::App& command)
{
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? command.get_name() : commandLine(*parent) + " " + command.get_name();
}

std::string helpOf(const CLI::App& command)
{
    return quoted(commandLine(command) + " --help");
}

// ---- What was meant ------------------------------------------------------------------------------

/// How many letters are to be inserted, removed or replaced to make one text the other.
std::size_t editDistance(const std::string& from, const std::string& to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// The one of these names that a mistyped one probably means; empty without one.
std::string meantName(const Names& names, const std::string& typed)
{
    constexpr std::size_t mostMistakes = 2;
    std::string meant;
    std::size_t least = mostMistakes + 1;
    for (const std::string& name : names) {
        const std::size_t mistakes = editDistance(typed, name);
        // Of "-x", nothing would be left.
        if (mistakes < least && mistakes + mostMistakes < name.size()) {
            least = mistakes;
            meant = name;
        }
    }
    return meant;
}

std::string didYouMean(const std::string& meant)
{
    return meant.empty() ? "" : "Did you mean " + quoted(meant) + "? ";
}

// ---- Commands ------------------------------------------------------------------------------------

Names commandNames(const CLI::App& app)
{
    Names names;
    for (const CLI::App* command : app.get_subcommands({}))
        names.push_back(command->get_name());
    return names;
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name)
{
    for (const CLI::App* command : app.get_subcommands({}))
        if (command->get_name() == name)
            return command;
    return nullptr;
}

std::string listOfCommands(const CLI::App& app)
{
    const Names names = commandNames(app);
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : &name == &names.back() ? " and " : ", ") + name;
    const bool one = names.size() == 1;
    return (app.get_parent() == nullptr ? "The commands are " : one ? "Its command is " : "Its commands are ") + list;
}

void reportCommand(const CLI::App& app, const std::string& typed, const Output& output)
{
    const std::string before = app.get_parent() == nullptr ? "" : commandLine(app) + " ";
    const std::string meant = meantName(commandNames(app), typed);
    output.error("there is no command \"" + before + typed + "\"",
                 didYouMean(meant.empty() ? "" : commandLine(app) + " " + meant) + listOfCommands(app) + "; see " +
                     helpOf(app) + ".");
}

// ---- Arguments -----------------------------------------------------------------------------------

/// The innermost command that was named.
const CLI::App& commandOf(const CLI::App& app)
{
    const std::vector<CLI::App*> named = app.get_subcommands();
    return named.empty() ? app : commandOf(*named.front());
}

/// The first command, from the outermost on, that was given an argument which it does not take.
const CLI::App& refusingCommand(const CLI::App& app)
{
    const std::vector<CLI::App*> named = app.get_subcommands();
    return named.empty() || app.remaining_size() > 0 ? app : refusingCommand(*named.front());
}

Names optionNames(const CLI::App& command)
{
    Names names;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

std::string advice(const CLI::App& command, const std::string& meant)
{
    const bool takesText = command.get_name() == "search";
    return didYouMean(meant) + "See " + helpOf(command) + "." +
           (takesText ? " A search text that begins with \"-\" goes after \"--\"." : "");
}

void reportArgument(const CLI::App& command, const std::string& argument, const Output& output)
{
    if (!argument.starts_with('-')) {
        output.error(quoted(argument) + " is one argument too many for " + quoted(commandLine(command)),
                     advice(command, {}));
        return;
    }
    const std::string name = argument.substr(0, argument.find('='));
    output.error(quoted(commandLine(command)) + " has no option " + quoted(name),
                 advice(command, meantName(optionNames(command), name)));
}

}  // namespace

bool reportUnknownCommand(const CLI::App& app, const std::vector<std::string>& arguments, const Output& output)
{
    const CLI::App* command = &app;
    for (const std::string& argument : arguments) {
        if (argument.starts_with('-') || commandNames(*command).empty())
            return false;
        const CLI::App* const next = commandNamed(*command, argument);
        if (next == nullptr) {
            reportCommand(*command, argument, output);
            return true;
        }
        command = next;
    }
    return false;
}

void reportWrongUsage(const CLI::App& app, const CLI::ParseError& error, const Output& output)
{
    const CLI::App& refusing = refusingCommand(app);
    if (refusing.remaining_size() > 0) {
        reportArgument(refusing, fromParser(refusing.remaining().front()), output);
        return;
    }
    const CLI::App& command = commandOf(app);
    if (command.get_subcommands({}).empty())
        output.error(error.what(), advice(command, {}));
    else
        output.error(quoted(commandLine(command)) + " needs a command",
                     listOfCommands(command) + "; see " + helpOf(command) + ".");
}

}  // namespace VelkHost
