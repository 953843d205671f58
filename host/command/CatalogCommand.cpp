#include "host/command/CatalogCommand.h"

#include "host/command/CatalogBuild.h"
#include "host/command/PackCommand.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/ParserArguments.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>

namespace VelkHost {
namespace {

constexpr const char* catalogExamples = R"(Examples:
  velk catalog sample -o sample.calib
  velk catalog build products.csv -o products.calib
  velk catalog pack house.calib --files textures -o house.calibz

"velk catalog COMMAND --help" tells more about each of them.)";

constexpr const char* buildExamples = R"(Examples:
  velk catalog build Scopia.sh3f -o scopia.calib
  velk catalog build Scopia.sh3f -o scopia-de.calib --language de --type bonus
  velk catalog build products.csv -o products.calib --name 'Our products'

A CSV file's first line names its columns: name, and any of id, category, folder
("Seating/Chairs"), keywords ("oak, seat"), files ("a.png;b.png"), width, depth and
height (in millimetres), creator, licence, price and currency. "property finish" is a
property of that name. name_de, category_de, folder_de and keywords_de hold the German
texts for --language de.

Exit codes: 0 written, 2 wrong command line, 4 the catalog could not be made; an
older FILE then stays as it was.)";

constexpr const char* sampleExamples = R"(Examples:
  velk catalog sample -o sample.calib
  velk catalog sample -o beispiel.calib --language de)";

struct BuildArguments
{
    std::string source;
    std::string target;
    std::string language;
    std::string type = "user";
    std::string id;
    std::string name;
    std::string format;
};

void addOptions(CLI::App& command, BuildArguments& arguments)
{
    command.add_option("-o,--output", arguments.target, "The .calib file to write")->required()->type_name("FILE");
    command.add_option("--language", arguments.language, "Take the names in this language, such as de or pt_PT")
        ->type_name("CODE");
    command
        .add_option("--type", arguments.type, "Type of the library: core, manufacturer, bonus or user\n(default: user)")
        ->check(CLI::IsMember({"core", "manufacturer", "bonus", "user"}));
    command.add_option("--id", arguments.id, "The library's id (default: the source's)")->type_name("ID");
    command.add_option("--name", arguments.name, "The library's name (default: the source's)")->type_name("NAME");
    command
        .add_option("--catalog-format", arguments.format,
                    "Format of the file: 1, or 2 with sizes and properties\n(default: 2 where there are any)")
        ->check(CLI::IsMember({"1", "2"}))
        ->type_name("NUMBER");
}

std::optional<CatalogFormat> formatFrom(const std::string& number)
{
    if (number.empty())
        return std::nullopt;
    return number == "1" ? CatalogFormat::Names : CatalogFormat::Properties;
}

/// Builds, and says what came of it.
int build(const BuildArguments& arguments, Output& output)
{
    const BuildOptions options{*kindFromName(arguments.type), arguments.language, fromParser(arguments.id),
                               fromParser(arguments.name)};
    const fileString target(fromParser(arguments.target));
    const std::optional<CatalogFormat> format = formatFrom(arguments.format);
    try {
        const BuiltCatalog built =
            arguments.source.empty() ? buildSample(target, options, format)
                                     : buildCatalog(fileString(fromParser(arguments.source)), target, options, format);
        output.write(printableUtf8(built.summary()) + "\n");
        return static_cast<int>(ExitCode::Success);
    } catch (const FileError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    }
}

void addBuild(CLI::App& catalog, Output& output, Action& action)
{
    CLI::App* const command =
        catalog.add_subcommand("build", "Make a .calib file from a furniture library or a CSV file");
    const auto arguments = std::make_shared<BuildArguments>();
    command->add_option("SOURCE", arguments->source, "A furniture library (.sh3f) or a CSV file (.csv)")->required();
    addOptions(*command, *arguments);
    command->footer(buildExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return build(*arguments, output); }; });
}

void addSample(CLI::App& catalog, Output& output, Action& action)
{
    CLI::App* const command = catalog.add_subcommand("sample", "Make a small library to try things with");
    const auto arguments = std::make_shared<BuildArguments>();
    addOptions(*command, *arguments);
    command->footer(sampleExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return build(*arguments, output); }; });
}

}  // namespace

void addCatalogCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const catalog = app.add_subcommand("catalog", "Make library files (.calib, .calibz)");
    catalog->require_subcommand(1);
    catalog->footer(catalogExamples);
    addBuild(*catalog, output, action);
    addSample(*catalog, output, action);
    addPackCommand(*catalog, output, action);
}

}  // namespace VelkHost
