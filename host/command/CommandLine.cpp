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
#include "host/command/WrongUsage.h"
#include "host/support/ExitCode.h"
#include "host/support/ParserArguments.h"

#include <VelkCommon/Version.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <new>

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
    app.name("velk");
    app.description(description);
    app.footer(lineExamples);
    app.require_subcommand(1);
    app.set_version_flag("--version", "velk " VELK_VERSION_STRING);
    app.get_formatter()->column_width(34);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    // "/x" is a text to search for on every system.
    app.allow_windows_style_options(false);
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
    CLI::App app;
    Action action;
    describeCommands(app, output, action);
    if (arguments.empty()) {
        output.write(app.help());
        return static_cast<int>(ExitCode::Success);
    }
    if (reportUnknownCommand(app, arguments, output))
        return static_cast<int>(ExitCode::Usage);
    try {
        std::vector<std::string> disguised = toParser(arguments);
        app.parse(disguised);
    } catch (const CLI::CallForVersion&) {
        output.write(app.version() + "\n");
        return static_cast<int>(ExitCode::Success);
    } catch (const CLI::CallForHelp&) {
        output.write(app.help());  // of the command that was named
        return static_cast<int>(ExitCode::Success);
    } catch (const CLI::ParseError& error) {
        reportWrongUsage(app, error, output);
        return static_cast<int>(ExitCode::Usage);
    }
    return action();
}

}  // namespace

void describeCommands(CLI::App& app, Output& output, Action& action)
{
    describe(app);
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
}

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
