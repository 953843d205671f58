#include "host/command/TourCommand.h"

#include "host/command/PublishReportText.h"
#include "host/command/TourContent.h"
#include "host/command/TourFolder.h"
#include "host/service/ServiceError.h"
#include "host/service/SiteService.h"
#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <CLI/CLI.hpp>

#include <chrono>
#include <cmath>
#include <memory>

namespace VelkHost {
namespace {

constexpr const char* tourExamples = R"(Examples:
  velk tour --sample -o tour
  velk tour /usr/share/sweethome3d/furniture -o tour

WORKDIR gets what a publisher, a service and an installation have: content and
publisher, site, and home. It also gets "earlier", the installation before its
update, for trying the update in a window. Each tour makes these folders anew.)";

constexpr const char* doorsOrWindows = "(door OR window) -garage";
constexpr const char* germanWords = "T\u00FCr OR Fenster OR Lampe";

struct TourArguments
{
    std::string source;
    std::string folder;
    bool sample = false;
};

/// Thrown when a command of the tour fails.
struct TourEnded
{
    int code;
};

/// The story, chapter by chapter. The commands are those that anyone could type, run in this program.
class Tour
{
public:
    Tour(const TourArguments& arguments, Output& output)
        : output_(output),
          folder_(freshTourFolder(fileString(fromParser(arguments.folder)))),
          content_(fileString(fromParser(arguments.source)), folder_ / U"content", folder_ / U"publisher")
    {}

    void run()
    {
        chapter("Build libraries, as their publisher does",
                "Core libraries are for everyone; bonus libraries are packed with their models and textures\n"
                "(\"velk catalog pack\" packs your own). Who made them is in the manufacturers' cards.");
        content_.build(output_);
        chapter("Publish them", "The result is a site of plain files that a web server or an object store can serve.");
        publish();
        startService();
        firstUpdate();
        searches();
        filteredSearch();
        secondUpdate();
        thirdUpdate();
        chapter("Now your own", "");
        tellMore();
    }

private:
    void chapter(const std::string& title, const std::string& explanation)
    {
        const std::string head = std::to_string(++chapter_) + ". " + title;
        output_.write("\n" + (output_.styles() ? "\x1b[1m" + head + "\x1b[0m" : head) + "\n");
        if (!explanation.empty())
            output_.write(explanation + "\n");
    }

    /// Shows a command and runs it.
    void command(const std::vector<std::string>& arguments, bool mayFindNothing = false)
    {
        std::string line = "$ " + shellQuoted(programPath());
        for (const std::string& argument : arguments)
            line += " " + shellQuoted(argument);
        output_.write(printableUtf8(line) + "\n");
        const int code = runVelk(arguments, output_);
        if (code != static_cast<int>(ExitCode::Success) &&
            !(mayFindNothing && code == static_cast<int>(ExitCode::NoHit)))
            throw TourEnded{code};
    }

    std::string path(const char32_t* name) const { return (folder_ / fileString(std::u32string(name))).utf8(); }

    void publish() { command({"publish", path(U"content"), "-o", path(U"site")}); }

    void startService()
    {
        chapter("Serve it", "The service of \"velk serve\" runs within this tour, to count what travels.");
        ServiceOptions options;
        options.site = folder_ / U"site";
        service_ = std::make_unique<SiteService>(options);
        output_.write("  The service address is " + service_->address() + "\n");
    }

    /// Runs the update, and returns the bytes that travelled.
    std::uint64_t update()
    {
        std::vector<std::string> arguments = {"update", "--service", service_->address(), "--home", path(U"home")};
        if (updates_++ == 0)
            for (const std::string& name : content_.bonusNames())
                arguments.insert(arguments.end(), {"--bonus", name});
        const ServiceTraffic before = service_->traffic();
        const auto start = std::chrono::steady_clock::now();
        command(arguments);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        const ServiceTraffic after = service_->traffic();
        const std::uint64_t bytes = after.bodyBytes - before.bodyBytes;
        std::string seconds = std::to_string(std::lround(took.count() * 10));
        seconds.insert(0, seconds.size() < 2 ? 2 - seconds.size() : 0, '0');
        seconds.insert(seconds.size() - 1, ".");
        output_.write("  " + std::to_string(after.requests - before.requests) + " requests, " +
                      std::to_string(after.notModified - before.notModified) + " answered \"not modified\"; " +
                      byteText(bytes) + " travelled in " + seconds + " s.\n");
        return bytes;
    }

    void updateManufacturers()
    {
        command({"manufacturer", "update", "--data-url", service_->manufacturersAddress(), "--logo-url",
                 service_->logoAddress(), "--home", path(U"home"), "--limit", "4"});
    }

    void firstUpdate()
    {
        chapter("Update an empty installation",
                "It learns of the core libraries from the service, and asks for the bonus libraries by name.\n"
                "The manufacturers' cards and logos have an update of their own.");
        allBytes_ = update();
        const fileString textures = folder_ / U"home" / U"referenced";
        output_.write("  Models and textures are in place:\n");
        for (const fileString& archive : filesInFolder(textures, Library::extensions::referencedFiles))
            output_.write("    " + printableUtf8(archive.stemWithExtension().utf8()) + ", " +
                          std::to_string(ZipUtils::getSizeOfArchive(archive)) + " files, " +
                          byteText(static_cast<std::uint64_t>(FileUtils::fileSize(archive))) + "\n");
        updateManufacturers();
        copyFolder(folder_ / U"home", folder_ / U"earlier");
    }

    void search(std::vector<std::string> arguments, const char* limit)
    {
        arguments.insert(arguments.begin(), "search");
        arguments.insert(arguments.end(), {"--home", path(U"home"), "--limit", limit});
        command(arguments, true);
    }

    void searches()
    {
        chapter("Search what is installed", "One of two words, and nothing with a third; then plain words.");
        search({doorsOrWindows}, "6");
        output_.write("\n");
        search({"--legacy", "dining table"}, "4");
    }

    void filteredSearch()
    {
        chapter("Narrow a search with a filter", "A filter names libraries; here the core libraries alone.");
        command({"filter", "add", "Core only", "--library", path(U"home/core"), "--home", path(U"home")});
        search({doorsOrWindows, "--filter", "Core only"}, "3");
    }

    void secondUpdate()
    {
        chapter("Publish a changed edition",
                "The libraries that are built again now have German names, and a manufacturer has another card\n"
                "and logo; the rest is unchanged.");
        command({"manufacturer", "edit", std::to_string(content_.changedManufacturer()), "--phone", "555 0123",
                 "--home", path(U"publisher")});
        content_.change(output_);
        publish();
        chapter("Update again", "The running service has noticed. Only what has changed travels.");
        const std::uint64_t bytes = update();
        output_.write("  That saved " + byteText(allBytes_ - std::min(bytes, allBytes_)) + " of " +
                      byteText(allBytes_) + ".\n");
        updateManufacturers();
        chapter("Search again", "");
        search({germanWords}, "6");
    }

    void thirdUpdate()
    {
        chapter("Update once more", "Nothing has changed since, so next to nothing travels.");
        update();
        updateManufacturers();
    }

    void tellMore()
    {
        const std::string velk = "  " + shellQuoted(programPath());
        const std::string home = " --home " + shellQuoted(path(U"home"));
        const std::string changed = std::to_string(content_.changedManufacturer());
        output_.write(printableUtf8(velk + " search lamp" + home) + "\n" +
                      printableUtf8(velk + " manufacturer show " + changed + home) + "\n" +
                      printableUtf8(velk + " search --explain " + shellQuoted("(bed OR sofa) -double")) + "\n" +
                      printableUtf8(velk + " serve " + shellQuoted(path(U"site")) + " --port 8080") + "\n" +
                      printableUtf8(velk + " --help") + "\n");
    }

    Output& output_;
    fileString folder_;
    TourContent content_;
    std::unique_ptr<SiteService> service_;
    int chapter_ = 0;
    int updates_ = 0;
    std::uint64_t allBytes_ = 0;
};

int runTour(const TourArguments& arguments, Output& output)
{
    try {
        Tour(arguments, output).run();
        return static_cast<int>(ExitCode::Success);
    } catch (const TourEnded& ended) {
        return ended.code;
    } catch (const FileError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    } catch (const ServiceError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    }
}

}  // namespace

void addTourCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command =
        app.add_subcommand("tour", "The whole story: build, publish, update, search, and update again");
    const auto arguments = std::make_shared<TourArguments>();
    CLI::Option* const source =
        command->add_option("FOLDER", arguments->source, "A folder with furniture libraries (.sh3f)");
    command->add_flag("--sample", arguments->sample, "Use the sample library instead")->excludes(source);
    command->add_option("-o,--output", arguments->folder, "The folder to work in")->required()->type_name("WORKDIR");
    command->footer(tourExamples);
    command->callback([arguments, &output, &action] {
        if (arguments->source.empty() && !arguments->sample)
            throw CLI::RequiredError("FOLDER or --sample");
        action = [arguments, &output] { return runTour(*arguments, output); };
    });
}

}  // namespace VelkHost
