#include "host/command/FilterCommand.h"

#include "host/command/DataCommand.h"
#include "host/command/FilterReport.h"
#include "host/installation/Filters.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/ParserArguments.h"
#include "host/support/TextTable.h"

#include <VelkLibrary/LibraryFilterManager.h>

namespace VelkHost {
namespace {

constexpr const char* filterExamples = R"(Examples:
  velk filter add Kitchens --library kitchen.calib --library more-kitchens/
  velk filter add Kitchens --id lib-user-7      a library by its id
  velk filter show Kitchens
  velk filter current Kitchens                  what an application then shows
  velk filter merge colleague.json
  velk search sink --filter Kitchens

A filter is a named selection of libraries, by their ids. The current one is for
applications; without "--filter", "velk search" searches everything.

Exit codes: 0 done, 2 wrong command line, 5 the output cannot be written, 9 there is
no such filter, or the filter file is damaged or cannot be written.)";

struct FilterArguments
{
    std::string name;
    std::vector<std::string> libraries;
    std::vector<std::string> ids;
    std::string file;
    std::string home;
    std::string format;
    bool none = false;
};

std::string quoted(const std::string& name)
{
    return "\"" + printableUtf8(name) + "\"";
}

/// The ids that were given, and those of the library files.
std::vector<std::string> libraryIds(const FilterArguments& arguments)
{
    std::vector<std::string> ids;
    for (const std::string& id : arguments.ids)
        ids.push_back(fromParser(id));
    std::vector<fileString> paths;
    for (const std::string& path : arguments.libraries)
        paths.emplace_back(fromParser(path));
    const LibrarySet libraries = loadLibraries(paths);
    if (!libraries.broken.empty())
        throw FileError(libraries.broken.front().path, libraries.broken.front().reason);
    for (const LoadedLibrary& library : libraries.loaded)
        ids.push_back(library.catalog->id);
    return ids;
}

// ---- What the commands do ------------------------------------------------------------------------

ExitCode listFilters(const FilterArguments& arguments, Output& output)
{
    const LibraryFilterManager& manager = installedFilters();
    output.write(arguments.format == "json"
                     ? filterJson(manager.getLibraryFilters(), manager.getCurrentFilterId())
                     : filterTable(manager.getLibraryFilters(), manager.getCurrentFilterId(), output.columns()));
    return ExitCode::Success;
}

ExitCode showFilter(const FilterArguments& arguments, Output& output)
{
    const LibraryFilter filter = filterNamed(fromParser(arguments.name));
    const LibrarySet installed = loadInstalledLibraries();
    output.write(arguments.format == "json"
                     ? filteredLibraryJson(filter, installed, installedFilters().getCurrentFilterId())
                     : filteredLibraryTable(filter, installed, output.columns()));
    return ExitCode::Success;
}

ExitCode addToNamed(const FilterArguments& arguments, Output& output)
{
    const std::string name = fromParser(arguments.name);
    const FilterChange change = addToFilter(name, libraryIds(arguments));
    if (change.made)
        output.write("Made the filter " + quoted(name) + " with " + counted(change.libraries, "library", "libraries") +
                     ".\n");
    else
        output.write("Added " + counted(change.added, "library", "libraries") + " to the filter " + quoted(name) +
                     ", which now has " + std::to_string(change.libraries) + ".\n");
    return ExitCode::Success;
}

ExitCode removeNamed(const FilterArguments& arguments, Output& output)
{
    const std::string name = fromParser(arguments.name);
    const std::vector<std::string> ids = libraryIds(arguments);
    if (!ids.empty()) {
        removeFromFilter(name, ids);
        output.write("Took " + counted(ids.size(), "library", "libraries") + " out of the filter " + quoted(name) +
                     ".\n");
        return ExitCode::Success;
    }
    const bool current = removeFilter(name);
    output.write("Removed the filter " + quoted(name) + (current ? "; now no filter is in force.\n" : ".\n"));
    return ExitCode::Success;
}

ExitCode showCurrent(const FilterArguments& arguments, Output& output)
{
    if (arguments.none)
        setCurrentFilter(noFilterId);
    else if (!arguments.name.empty())
        setCurrentFilter(filterNamed(fromParser(arguments.name)).getFilterId());
    else
        installedFilters();
    const LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
    const LibraryFilter filter =
        LibraryFilterManager::getLibraryFilterFromId(manager.getCurrentFilterId(), manager.getLibraryFilters());
    if (arguments.format == "json")
        output.write(currentFilterJson(filter));
    else
        output.write(printableUtf8(manager.getCurrentFilterString()) + "\n");
    return ExitCode::Success;
}

ExitCode mergeFile(const FilterArguments& arguments, Output& output)
{
    const fileString path(fromParser(arguments.file));
    const FilterMerge merged = mergeFilterFile(path);
    output.write(arguments.format == "json" ? mergeJson(merged) : mergeText(merged, path));
    return ExitCode::Success;
}

// ---- Their command lines -------------------------------------------------------------------------

void requireLibraries(const FilterArguments& arguments)
{
    if (arguments.libraries.empty() && arguments.ids.empty())
        throw CLI::RequiredError("--library or --id (what the filter is to show)");
}

void requireOneCurrent(const FilterArguments& arguments)
{
    if (arguments.none && !arguments.name.empty())
        throw CLI::ExcludesError("--none", "NAME");
}

void addLibraryOptions(CLI::App& command, FilterArguments& arguments)
{
    command.add_option("-l,--library", arguments.libraries, "A .calib file, or a folder of them; may be repeated")
        ->allow_extra_args(false)
        ->type_name("PATH");
    command.add_option("--id", arguments.ids, "A library's id; may be repeated")
        ->allow_extra_args(false)
        ->type_name("ID");
}

CLI::Option& addNameOption(CLI::App& command, FilterArguments& arguments, const char* description)
{
    CLI::Option& name = *command.add_option("NAME", arguments.name, description);
    requireText(name);
    return name;
}

}  // namespace

void addFilterCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const filter =
        app.add_subcommand("filter", "Named selections of libraries, for searches and applications");
    filter->require_subcommand(1);
    filter->footer(filterExamples);
    DataCommands<FilterArguments> commands(*filter, output, action);

    const auto lists = commands.add("list", "Show the filters, the current one with a star", listFilters);
    addFormatOption(lists.command, lists.arguments.format);

    const auto shows = commands.add("show", "Show the libraries of a filter", showFilter);
    addNameOption(shows.command, shows.arguments, "The filter").required();
    addFormatOption(shows.command, shows.arguments.format);

    const auto adds = commands.add("add", "Make a filter, or add libraries to one", addToNamed, requireLibraries);
    addNameOption(adds.command, adds.arguments, "The filter").required();
    addLibraryOptions(adds.command, adds.arguments);

    const auto removes = commands.add("remove", "Remove a filter, or libraries from it", removeNamed);
    addNameOption(removes.command, removes.arguments, "The filter").required();
    addLibraryOptions(removes.command, removes.arguments);

    const auto currents =
        commands.add("current", "Show the current filter, or put one in force", showCurrent, requireOneCurrent);
    addNameOption(currents.command, currents.arguments, "The filter to put in force");
    currents.command.add_flag("--none", currents.arguments.none, "Put no filter in force");
    addFormatOption(currents.command, currents.arguments.format);

    const auto merges = commands.add("merge", "Add the filters of another filter file", mergeFile);
    merges.command.add_option("FILE", merges.arguments.file, "The other file, which is not changed")->required();
    addFormatOption(merges.command, merges.arguments.format);
}

}  // namespace VelkHost
