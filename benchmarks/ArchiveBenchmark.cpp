// What it costs to take packed libraries apart and to merge archives, beside the least that it can cost and beside
// libzip, with real archives, many small entries and very large ones. Arguments: folders to look for archives in,
// instead of the system's; --quick leaves out the archives of several gigabytes, --large leaves out all others.
#include "ArchiveData.h"
#include "ArchivePeers.h"
#include "Cost.h"
#include "Measures.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkLibrary/LibraryImport.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

namespace {

using bench::Cost;

constexpr int repetitions = 5;
constexpr int largeRounds = 3;
constexpr std::uint64_t largeDatabase = 2'700'000'000;
constexpr std::uint64_t largeEntry = 4'800'000'000;

fileString text(const std::string& path)
{
    return fileString(path);
}

/// The folder for the benchmark's files, which is removed at the end.
class WorkFolder
{
public:
    WorkFolder() : path_(std::filesystem::temp_directory_path() / ("velk-bench-" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(path_);
    }
    ~WorkFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    fileString operator/(const std::string& name) const { return text((path_ / name).string()); }

private:
    std::filesystem::path path_;
};

/// A packed library, with the names that its parts get.
struct Library
{
    explicit Library(const fileString& path)
        : archive(path), database(path.pathAndName() + text(".calib")), others(path.pathAndName() + text(".zip"))
    {}

    void removeParts() const
    {
        FileUtils::removePath(database, FileUtils::noFlags);
        FileUtils::removePath(others, FileUtils::noFlags);
    }

    fileString archive;
    fileString database;
    fileString others;
};

using Split = std::function<bool(const Library&)>;

bool own(const Library& library)
{
    const auto [first, second] = LibraryImport::unpack(library.archive, false, nullptr);
    return first.has_value();
}

bool bound(const Library& library)
{
    return bench::boundOfSplit(library.archive, library.database, library.others);
}

bool libzip(const Library& library)
{
    return bench::splitByLibzip(library.archive, library.database, library.others);
}

struct Costs
{
    Cost own;
    Cost bound;
    Cost libzip;
};

/// The least costs; the three take turns, because the machine's speed drifts.
Costs split(const Library& library, int rounds)
{
    Costs costs;
    for (int round = 0; round < rounds; ++round) {
        const auto measure = [&](const char* name, const Split& work, Cost& cost) {
            library.removeParts();
            const Cost once = bench::costOf(name, [&] { return work(library); });
            cost = round == 0 ? once : bench::least(cost, once);
        };
        measure("the bound", bound, costs.bound);
        measure("libzip", libzip, costs.libzip);
        measure("the import", own, costs.own);
    }
    return costs;
}

void print(const std::string& what, const Costs& costs)
{
    std::printf("%-34s %9.3f %9.3f %9.3f   %9.3f %9.3f %9.3f %9.0f\n", what.c_str(), costs.own.cpu, costs.bound.cpu,
                costs.libzip.cpu, costs.own.wall, costs.bound.wall, costs.libzip.wall, costs.own.memory);
    std::fflush(stdout);
}

bool succeeds(const std::string& line)
{
    return std::system((line + " >/dev/null").c_str()) == 0;
}

/// All measures, in the order of the table.
class Measures
{
public:
    explicit Measures(std::vector<fileString> sources) : sources_(std::move(sources)) {}

    bool run(bool little, bool large)
    {
        std::printf("%-34s %9s %9s %9s   %9s %9s %9s %9s\n", "", "own", "bound", "libzip", "own", "bound", "libzip",
                    "own");
        std::printf("%-34s %29s   %29s %9s\n", "", "processor seconds", "seconds", "MiB");
        if (little) {
            realArchives();
            smallEntries();
            merges();
        }
        if (large) {
            database();
            zip64();
        }
        std::printf("\n");
        return bench::printMeasures(measures_);
    }

private:
    void add(const std::string& what, double value, double gate, double target, const char* unit = "x")
    {
        measures_.push_back({what, value, gate, target, false, unit});
    }

    void realArchives()
    {
        Cost own;
        Cost bound;
        for (const fileString& source : sources_) {
            const Library library(folder_ / (source.stem().utf8() + ".calibz"));
            bench::packLibrary({source}, library.archive);
            const Costs costs = split(library, repetitions);
            print(source.stem().utf8(), costs);
            own.cpu += costs.own.cpu;
            bound.cpu += costs.bound.cpu;
            library.removeParts();
        }
        add("split of the real archives, against the bound", own.cpu / bound.cpu, 2.3, 1.5);
    }

    void smallEntries()
    {
        double times[2] = {};
        for (const int count : {16'000, 32'000, 50'000}) {
            const Library library(folder_ / ("small" + std::to_string(count) + ".calibz"));
            bench::packSmallEntries(library.archive, count);
            const Costs costs = split(library, 3 * repetitions);
            print(std::to_string(count + 1) + " small entries", costs);
            if (count == 50'000)
                add("50,001 small entries, against libzip", costs.own.cpu / costs.libzip.cpu, 1.1, 0.6);
            else
                times[count / 32'000] = costs.own.cpu;
        }
        add("time of 32,000 against 16,000 entries", times[1] / times[0], 2.3, 2.1);
    }

    void merges()
    {
        const fileString first = folder_ / "first.zip";
        const fileString second = folder_ / "second.zip";
        bench::packLibrary({sources_.back()}, first);
        bench::packLibrary({sources_.at(2), sources_.at(3), sources_.back()}, second, 816);
        const fileString destination = folder_ / "destination.zip";
        const fileString source = folder_ / "source.zip";
        Costs costs;
        for (int round = 0; round < repetitions; ++round) {
            const auto measure = [&](const char* name, const std::function<bool()>& work, Cost& cost) {
                FileUtils::copyFile(first, destination, true);
                FileUtils::copyFile(second, source, true);
                const Cost once = bench::costOf(name, work);
                cost = round == 0 ? once : bench::least(cost, once);
            };
            measure(
                "copying", [&] { return FileUtils::copyFile(destination, folder_ / "copy.zip", true); }, costs.bound);
            measure(
                "libzip", [&] { return bench::mergeByLibzip(source, destination); }, costs.libzip);
            measure(
                "the merge", [&] { return LibraryImport::moveArchivedTextures(source, destination, nullptr); },
                costs.own);
        }
        print("merge of " + std::to_string(ZipUtils::getSizeOfArchive(first)) + " and " +
                  std::to_string(ZipUtils::getSizeOfArchive(second)),
              costs);
        const auto names = ZipUtils::getFilenamesInArchive(destination);
        const std::set<fileString> distinct(names.begin(), names.end());
        add("merge of two real archives, against libzip", costs.own.cpu / costs.libzip.cpu, 1.1, 0.6);
        add("duplicate names after the merge", static_cast<double>(names.size() - distinct.size()), 0, 0, "");
    }

    void database()
    {
        const Library library(folder_ / "large.calibz");
        const std::uint64_t size = bench::packLargeDatabase(sources_.back(), library.archive, largeDatabase);
        Costs costs;
        std::string expected;
        const auto measure = [&](const char* name, const Split& work, Cost& cost, int round) {
            library.removeParts();
            const Cost once = bench::costOf(name, [&] { return work(library); });
            cost = round == 0 ? once : bench::least(cost, once);
        };
        // A single time says little: writing so much takes the system up to twice as long when it has to look for
        // memory first.
        for (int round = 0; round < largeRounds; ++round) {
            measure("libzip", libzip, costs.libzip, round);
            if (round == 0)
                expected = SHA1::fileContentsToSHA1Hex(library.database);
            measure("the import", own, costs.own, round);
        }
        print("a database of 2.7 GB", costs);
        const bool right = FileUtils::fileSize(library.database) == static_cast<long long>(size) &&
                           SHA1::fileContentsToSHA1Hex(library.database) == expected;
        add("2.7 GB database, against libzip", costs.own.cpu / costs.libzip.cpu, 1.1, 0.9);
        add("2.7 GB database, most memory", costs.own.memory, 128, 64, "MiB");
        add("2.7 GB database, wrong results", right ? 0 : 1, 0, 0, "");
        library.removeParts();
        FileUtils::removePath(library.archive, FileUtils::noFlags);
    }

    void zip64()
    {
        const Library library(folder_ / "wide.calibz");
        bench::packLargeEntry(library.archive, largeEntry, 66'000);
        Costs costs;
        costs.bound = bench::costOf("the bound", [&] { return bound(library); });
        library.removeParts();
        costs.own = bench::costOf("the import", [&] { return own(library); });
        print("66,001 entries, one of 4.8 GB", costs);
        const std::string others = "'" + library.others.utf8() + "'";
        const std::string digest = "| sha1sum > " + (folder_ / "digest").utf8();
        const bool clean = succeeds("unzip -tqq " + others) && succeeds("7z t -bso0 " + others) &&
                           succeeds("unzip -p " + others + " large.bin " + digest + "1") &&
                           succeeds("unzip -p '" + library.archive.utf8() + "' large.bin " + digest + "2") &&
                           succeeds("cmp " + (folder_ / "digest1").utf8() + " " + (folder_ / "digest2").utf8());
        add("zip64: faults found by unzip, 7z and SHA-1", clean ? 0 : 1, 0, 0, "");
        // Only the target asks for speed here.
        add("zip64, against the bound", costs.own.cpu / costs.bound.cpu, 1e9, 2);
    }

    WorkFolder folder_;
    std::vector<fileString> sources_;
    std::vector<bench::Measure> measures_;
};

}  // namespace

int main(int argumentCount, char** arguments)
try {
    std::vector<std::string> folders;
    bool little = true;
    bool large = true;
    for (int i = 1; i < argumentCount; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--quick")
            large = false;
        else if (argument == "--large")
            little = false;
        else
            folders.push_back(argument);
    }
    const std::vector<fileString> sources = bench::furnitureArchives(folders);
    if (sources.size() < 5) {
        std::fprintf(stderr,
                     "Too few archives (%zu). Install the package sweethome3d-furniture, or give the folder "
                     "that holds its files.\n",
                     sources.size());
        return 2;
    }
    return Measures(sources).run(little, large) ? EXIT_SUCCESS : EXIT_FAILURE;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
}
