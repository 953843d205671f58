#include "host/command/CommandLine.h"

#include "host/command/CatalogCommand.h"
#include "host/command/FilterCommand.h"
#include "host/command/ManufacturerCommand.h"
#include "host/command/PublishCommand.h"
#include "host/command/SearchCommand.h"
#include "host/command/ServeCommand.h"
#include "host/command/TexturesCommand.h"
#include "host/command/TourCommand.h"
#include "host/command/UnpackCommand.h"
#include "host/command/UpdateCommand.h"
#include "host/support/ExitCode.h"
#include "host/support/ParserArguments.h"

#include <VelkCommon/Version.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <new>
#include <numeric>
#include <utility>

namespace VelkHost {
namespace {

constexpr const char* description = "velk - searches libraries of architectural content, and makes them";

constexpr const char* lineExamples = R"(Try it in three steps:
  velk catalog sample -o sample.calib            make a small library to play with
  velk search chair --library sample.calib       look for something
  velk search 'chair OR sofa' --library .        in all libraries of a folder

A search text, from simple to clever:
  office chair             both words
  'chair OR stool'         either one (capitals)
  'chair -office'          chair, but nothing with "office"
  '"dining table"'         the words together
  '(desk OR table) oak'    one of two, with oak

"velk COMMAND --help" tells more about each command.)";

void describe(CLI::App& app)
{
    app.footer(lineExamples);
    app.require_subcommand(1);
    app.set_version_flag("--version", "velk " VELK_VERSION_STRING);
    app.get_formatter()->column_width(34);
    // "/x" is a text to search for on every system.
    app.allow_windows_style_options(false);
}

/// What a wrong command line deserves: the reason, and where help is.
int reportUsage(const CLI::App& app, const CLI::ParseError& error, Output& output)
{
    std::string command = "velk";
    for (const CLI::App* sub = &app; !sub->get_subcommands().empty();) {
        sub = sub->get_subcommands().front();
        command += " " + sub->get_name();
    }
    output.error(error.what(),
                 "See \"" + command + " --help\". A search text that begins with \"-\" goes after \"--\".");
    return static_cast<int>(ExitCode::Usage);
}

bool isCommand(const CLI::App& app, const std::string& name)
{
    const std::vector<const CLI::App*> commands = app.get_subcommands({});
    return std::any_of(commands.begin(), commands.end(),
                       [&](const CLI::App* command) { return command->get_name() == name; });
}

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

/// The command that a mistyped name probably means; empty without one.
std::string meantCommand(const std::vector<const CLI::App*>& commands, const std::string& name)
{
    constexpr std::size_t mostMistakes = 2;
    std::string meant;
    std::size_t least = mostMistakes + 1;
    for (const CLI::App* command : commands) {
        const std::size_t mistakes = editDistance(name, command->get_name());
        if (mistakes < least) {
            least = mistakes;
            meant = command->get_name();
        }
    }
    return meant;
}

/// The first argument names no command.
int reportUnknownCommand(const CLI::App& app, const std::string& name, Output& output)
{
    std::string commands;
    const std::vector<const CLI::App*> all = app.get_subcommands({});
    for (const CLI::App* command : all)
        commands += (commands.empty() ? "" : command == all.back() ? " and " : ", ") + command->get_name();
    const std::string meant = meantCommand(all, name);
    output.error("there is no command \"" + name + "\"",
                 (meant.empty() ? "" : "Did you mean \"velk " + meant + "\"? ") + "The commands are " + commands +
                     "; see \"velk --help\".");
    return static_cast<int>(ExitCode::Usage);
}

/// "velk help search" is "velk search --help".
std::vector<std::string> withoutHelpCommand(std::vector<std::string> arguments)
{
    if (!arguments.empty() && arguments.front() == "help") {
        arguments.erase(arguments.begin());
        arguments.emplace_back("--help");
    }
    return arguments;
}

int run(const std::vector<std::string>& given, Output& output)
{
    const std::vector<std::string> arguments = withoutHelpCommand(given);
    CLI::App app(description, "velk");
    describe(app);
    Action action;
    addSearchCommand(app, output, action);
    addCatalogCommand(app, output, action);
    addFilterCommand(app, output, action);
    addManufacturerCommand(app, output, action);
    addPublishCommand(app, output, action);
    addServeCommand(app, output, action);
    addTexturesCommand(app, output, action);
    addTourCommand(app, output, action);
    addUnpackCommand(app, output, action);
    addUpdateCommand(app, output, action);
    if (arguments.empty()) {
        output.write(app.help());
        return static_cast<int>(ExitCode::Success);
    }
    if (!arguments.front().starts_with('-') && !isCommand(app, arguments.front()))
        return reportUnknownCommand(app, arguments.front(), output);
    try {
        std::vector<std::string> disguised = toParser(arguments);
        app.parse(disguised);
    } catch (const CLI::CallForVersion&) {
        output.write(app.version() + "\n");
        return static_cast<int>(ExitCode::Success);
    } catch (const CLI::CallForHelp&) {
        const CLI::App* asked = &app;
        while (!asked->get_subcommands().empty())
            asked = asked->get_subcommands().front();
        output.write(asked->help());
        return static_cast<int>(ExitCode::Success);
    } catch (const CLI::ParseError& error) {
        return reportUsage(app, error, output);
    }
    return action();
}

}  // namespace

int runVelk(const std::vector<std::string>& arguments, Output& output) noexcept
{
    try {
        const int code = run(arguments, output);
        if (!output.failed())
            return code;
        output.error("the output cannot be written; is the disk full?");
        return static_cast<int>(ExitCode::OutputFailed);
    } catch (const std::bad_alloc&) {
        output.error("out of memory");
    } catch (const std::exception& error) {
        output.error(std::string("unexpected failure: ") + error.what());
    }
    return static_cast<int>(ExitCode::BuildFailed);
}

}  // namespace VelkHost
