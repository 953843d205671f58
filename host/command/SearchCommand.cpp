#include "host/command/SearchCommand.h"

#include "host/command/CommonOptions.h"
#include "host/command/DataWork.h"
#include "host/command/HitReport.h"
#include "host/installation/Filters.h"
#include "host/installation/SearchText.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/ParserArguments.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace VelkHost {
namespace {

constexpr const char* searchExamples = R"(Examples:
  velk search office chair --library sample.calib
  velk search '(chair OR stool) -office' --library libraries/
  velk search --legacy table --kind items
  velk search --explain '(chair OR table) oak'
  velk search sink --filter Kitchens            only in libraries of that filter
  velk search table --fits 1200x800x-           what is not larger, in millimetres
  velk search --id 'velk-sample#desk' --library sample.calib --format json
  velk search -- -office chair          a text that begins with "-"

Exit codes: 0 hits, 1 no hit, 2 wrong command line, 3 a library is missing or
broken (the hits of the others are shown), 5 the output cannot be written, 9 there
is no such filter.)";

/// What the parser fills in; texts that mean something else are turned into SearchOptions afterwards.
struct SearchArguments
{
    std::vector<std::string> words;
    std::vector<std::string> libraries;
    std::vector<std::string> types;
    std::string id;
    std::string kind = "all";
    std::string fits;
    std::string filter;
    std::string home;
    std::string format;
    std::size_t limit = SearchOptions().limit;
    bool legacy = false;
    bool explain = false;
};

void addOptions(CLI::App& command, SearchArguments& arguments)
{
    command.add_option("TEXT", arguments.words, "What to look for; several words are one text");
    command
        .add_option("-l,--library", arguments.libraries,
                    "A .calib file, or a folder of them; may be repeated\n(default: the installed libraries)")
        ->allow_extra_args(false)
        ->type_name("PATH");
    command
        .add_option("--type", arguments.types,
                    "Only libraries of this type: core, manufacturer,\nbonus or user; may be repeated")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"core", "manufacturer", "bonus", "user"}));
    requireText(
        *command
             .add_option(
                 "--filter", arguments.filter,
                 "Only libraries of this filter (see velk filter); without\nit the current filter plays no part")
             ->type_name("NAME"));
    command.add_option("--kind", arguments.kind, "What to rate: folders, items or all")
        ->check(CLI::IsMember({"folders", "items", "all"}))
        ->type_name("KIND");
    command
        .add_option("--fits", arguments.fits,
                    "Only items of at most this width, depth and height in\nmillimetres, with \"-\" for any; they may "
                    "be turned by\n90 degrees")
        ->type_name("WxDxH")
        ->check([](const std::string& text) {
            return roomFromText(text) ? std::string() : "\"" + text + "\" is no size such as 800x600x- (millimetres)";
        });
    command.add_flag("--legacy", arguments.legacy, "Take TEXT as plain words, matched as whole words only");
    command.add_option("--id", arguments.id, "Show the item with exactly this id")->type_name("ID");
    command.add_flag("--explain", arguments.explain, "Show how TEXT is understood, and search nothing");
    addFormatOption(command, arguments.format);
    addLimitOption(command, arguments.limit, "hits");
    addHomeOption(command, arguments.home);
}

SearchOptions optionsFrom(const SearchArguments& arguments)
{
    SearchOptions options;
    for (const std::string& word : arguments.words)
        options.request.text += (options.request.text.empty() ? "" : " ") + fromParser(word);
    options.request.uniqueId = fromParser(arguments.id);
    options.request.filter = fromParser(arguments.filter);
    options.request.room = roomFromText(arguments.fits).value_or(RoomToFit());
    options.request.legacy = arguments.legacy;
    options.request.folders = arguments.kind != "items" && arguments.fits.empty();  // they have no size
    options.request.items = arguments.kind != "folders";
    for (const std::string& type : arguments.types)
        options.request.types.insert(toLibType(*kindFromName(type)));
    for (const std::string& path : arguments.libraries)
        options.libraries.emplace_back(fromParser(path));
    options.limit = arguments.limit;
    options.json = arguments.format == "json";
    options.explain = arguments.explain;
    return options;
}

int explain(const SearchOptions& options, Output& output)
{
    const Library::Search::Info info = searchInfo(options.request);
    output.write(options.json ? explainJson(info) : explainText(info));
    return static_cast<int>(info.parseTree.groups.empty() ? ExitCode::NoHit : ExitCode::Success);
}

/// Says what could not be searched; false when there is nothing to search at all.
bool reportLibraries(const LibrarySet& libraries, const Output& output)
{
    for (const BrokenLibrary& library : libraries.broken)
        output.error(library.path.humanReadableString() + ": " + library.reason);
    if (!libraries.loaded.empty() || !libraries.broken.empty())
        return true;
    std::string advice = "These folders hold no .calib file:";
    for (const fileString& folder : installedLibraryFolders())
        advice += "\n  " + printableUtf8(folder.utf8());
    output.error("no libraries are installed",
                 advice + "\nName a library with --library, or make one:\n  velk catalog sample -o sample.calib");
    return false;
}

LibrarySet librariesFor(const SearchOptions& options)
{
    const CatalogContent content = options.json ? CatalogContent::Properties : CatalogContent::Names;
    return options.libraries.empty() ? loadInstalledLibraries(content) : loadLibraries(options.libraries, content);
}

/// Keeps only the libraries with these ids. When none of them is there, tells why and returns false.
bool limitTo(const std::vector<std::string>& ids, const std::string& filter, LibrarySet& libraries,
             const Output& output)
{
    if (libraries.loaded.empty())
        return true;
    keepLibraries(libraries, ids);
    if (libraries.loaded.empty())
        output.error("none of these libraries is in the filter \"" + filter + "\"",
                     "\"velk filter show\" shows the libraries of a filter.");
    return !libraries.loaded.empty();
}

ExitCode searchLibraries(const SearchOptions& options, Output& output)
{
    const std::string& filter = options.request.filter;
    const std::vector<std::string> ids =
        filter.empty() ? std::vector<std::string>() : filterNamed(filter).getDatabaseIds();
    LibrarySet libraries = librariesFor(options);
    if (!reportLibraries(libraries, output))
        return ExitCode::BrokenLibrary;
    if (libraries.loaded.empty() && !options.json)
        return ExitCode::BrokenLibrary;
    if (!filter.empty() && !limitTo(ids, filter, libraries, output))
        return ExitCode::BrokenLibrary;
    const Library::Search::Info info = searchInfo(options.request);
    const SearchResult result = runSearch(libraries, options.request, info);
    output.write(options.json ? hitJson(libraries, result, options.request, options.limit)
                              : hitTable(libraries, result, info, {options.limit, output.columns(), output.styles()}));
    if (!libraries.broken.empty())
        return ExitCode::BrokenLibrary;
    return result.size() == 0 ? ExitCode::NoHit : ExitCode::Success;
}

}  // namespace

int search(const SearchOptions& options, Output& output)
{
    if (options.explain)
        return explain(options, output);
    return static_cast<int>(runOnData(output, [&] { return searchLibraries(options, output); }));
}

void addSearchCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command =
        app.add_subcommand("search", "Rate everything in libraries against a text, best hits first");
    const auto arguments = std::make_shared<SearchArguments>();
    addOptions(*command, *arguments);
    command->footer(searchExamples);
    command->callback([arguments, &output, &action] {
        if (arguments->words.empty() && arguments->id.empty())
            throw CLI::RequiredError("TEXT (what to look for) or --id");
        if (arguments->kind == "folders" && !arguments->fits.empty())
            throw CLI::ValidationError("--fits", "is about items; folders have no size");
        action = [arguments, &output] {
            useHome(arguments->home);
            return search(optionsFrom(*arguments), output);
        };
    });
}

}  // namespace VelkHost
