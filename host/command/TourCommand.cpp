#include "host/catalog/CatalogError.h"
#include "host/catalog/CatalogFolder.h"
#include "host/command/CatalogBuild.h"
#include "host/command/CommandLine.h"
#include "host/command/ExitCode.h"
#include "host/command/SearchCommand.h"
#include "host/support/DisplayText.h"
#include "host/support/System.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace VelkHost {
namespace {

constexpr const char* examples = R"(Examples:
  velk tour --sample -o tour
  velk tour /usr/share/sweethome3d/furniture -o tour)";

constexpr std::size_t shownHits = 8;  // of each search

struct TourArguments
{
    std::string source;
    std::string folder;
    bool sample = false;
};

/// One search of the tour.
struct TourSearch
{
    const char* title;
    const char* language;  ///< the folder with the libraries in that language
    const char* text;
    bool legacy;
};

constexpr TourSearch searches[] = {
    {"An expression: one of two words, and nothing with a third", "en", "(door OR window) -garage", false},
    {"The same libraries with German names", "de", "T\u00FCr OR Fenster", false},
    {"Plain words, matched as whole words only", "en", "dining table", true},
};

class Tour
{
public:
    Tour(const TourArguments& arguments, Output& output)
        : arguments_(arguments), folder_(fromParser(arguments.folder)), output_(output)
    {}

    int run()
    {
        for (const char* language : {"en", "de"})
            build(language);
        int code = static_cast<int>(ExitCode::Success);
        for (const TourSearch& search : searches)
            code = std::max(code, show(search));
        tellMore();
        return code;
    }

private:
    fileString libraries(const std::string& language) const { return folder_ / fileString(language); }

    void build(const std::string& language)
    {
        BuildOptions options;
        options.kind = LibraryKind::Core;
        // The sources' own names are English.
        options.language = language == "en" ? "" : language;
        makeFolder(libraries(language));
        output_.write("Building libraries in " + printableUtf8(libraries(language).utf8()) + "\n");
        if (arguments_.sample)
            tell(buildSample(libraries(language) / U"sample.calib", options));
        else
            for (const fileString& source : sources())
                tell(buildCatalog(source, target(source, language), options));
        output_.write("\n");
    }

    std::vector<fileString> sources() const
    {
        const fileString folder(fromParser(arguments_.source));
        if (!isFolder(folder))
            throw CatalogError(folder, "is no folder; name one with .sh3f files, or give --sample");
        std::vector<fileString> files = filesInFolder(folder, fileString(std::string(".sh3f")));
        if (files.empty())
            throw CatalogError(folder, "holds no .sh3f file; give --sample to do without");
        return files;
    }

    fileString target(const fileString& source, const std::string& language) const
    {
        return libraries(language) / (source.stem() + fileString(std::string(".calib")));
    }

    void tell(const BuiltCatalog& built)
    {
        output_.write("  " + printableUtf8(fileString(built.path).stemWithExtension().utf8()) +
                      built.summary().substr(built.path.utf8().size()) + "\n");
    }

    std::string command(const TourSearch& search) const
    {
        return shellQuoted(programPath()) + " search " + (search.legacy ? "--legacy " : "") + shellQuoted(search.text) +
               " --library " + shellQuoted(libraries(search.language).utf8());
    }

    int show(const TourSearch& search)
    {
        output_.write(std::string(search.title) + "\n$ " + command(search) + " --limit " + std::to_string(shownHits) +
                      "\n");
        SearchOptions options;
        options.request.text = search.text;
        options.request.legacy = search.legacy;
        options.libraries = {libraries(search.language)};
        options.limit = shownHits;
        const int code = VelkHost::search(options, output_);
        output_.write("\n");
        // A library of other things is no failure.
        return code == static_cast<int>(ExitCode::NoHit) ? static_cast<int>(ExitCode::Success) : code;
    }

    void tellMore()
    {
        const std::string velk = shellQuoted(programPath());
        const std::string library = " --library " + shellQuoted(libraries("en").utf8());
        output_.write("Now your own, for example:\n  " + velk + " search lamp" + library + "\n  " + velk + " search " +
                      shellQuoted("\"coffee table\" OR sofa") + library + " --kind items\n  " + velk +
                      " search --explain " + shellQuoted("(bed OR sofa) -double") + "\n  " + velk + " --help\n");
    }

    TourArguments arguments_;
    fileString folder_;
    Output& output_;
};

int runTour(const TourArguments& arguments, Output& output)
{
    try {
        return Tour(arguments, output).run();
    } catch (const CatalogError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    }
}

}  // namespace

void addTourCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command = app.add_subcommand("tour", "Build libraries and show three searches in them");
    const auto arguments = std::make_shared<TourArguments>();
    CLI::Option* const source =
        command->add_option("FOLDER", arguments->source, "A folder with furniture libraries (.sh3f)");
    command->add_flag("--sample", arguments->sample, "Use the sample library instead")->excludes(source);
    command->add_option("-o,--output", arguments->folder, "The folder to build the libraries in")
        ->required()
        ->type_name("WORKDIR");
    command->footer(examples);
    command->callback([arguments, &output, &action] {
        if (arguments->source.empty() && !arguments->sample)
            throw CLI::RequiredError("FOLDER or --sample");
        action = [arguments, &output] { return runTour(*arguments, output); };
    });
}

}  // namespace VelkHost
