// How fast names are rated, beside other ways to do it. One table shows the results with what is demanded (gate) and
// what is aimed at (target). Every peer must give the same ratings as ours on all of the data before it is timed.
// Arguments: folders to look for libraries in, instead of the system's; then those of Google Benchmark.
#include "BulkMeasures.h"
#include "LeastTimes.h"
#include "LibraryNames.h"
#include "Measures.h"
#include "RatingPeers.h"
#include "support/CountedMemory.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/LibraryResultCategorizer.h>
#include <VelkLibrary/Search/ParseTree.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <vector>

using Library::Search::Info;
using Library::Search::ORGroup;
using test::allocatedBytes;
using test::allocations;

namespace {

using bench::Entry;
using bench::LeastTimes;
using bench::Peer;
using bench::Rater;

// Searches that look at every byte of a large text: the first three are in no name, and the last is only inside
// words, so that a better match may always follow.
const char32_t* const largeSearches[] = {U"helicopter", U"xyloph", U"\"zebra crossing\"", U"onnecto"};

// What people type, in the languages of the libraries: one word and several, alternatives, exclusions,
// phrases, parts of numbers, and words that no library holds.
const char32_t* const searches[] = {
    U"chair",
    U"table",
    U"sofa",
    U"lamp",
    U"bed",
    U"a",
    U"door",
    U"wind",
    U"3",
    U"op",
    U"office chair",
    U"kitchen sink",
    U"double bed",
    U"usb connector",
    U"low dropout regulator",
    U"\"dining table\"",
    U"\"operational amplifier\"",
    U"chair OR table",
    U"sofa|couch|armchair",
    U"(chair|table) (wood|metal|glass)",
    U"lamp -floor",
    U"chair -arm -office",
    U"window -(double|round)",
    U"regulator -adjustable -switching",
    U"(amplifier OR comparator) -dual -quad",
    U"LM358",
    U"74HC",
    U"SOIC-8",
    U"café",
    U"réfrigérateur",
    U"tür fenster",
    U"стол",
    U"стул OR кресло",
    U"καρέκλα",
    U"椅子",
    U"helicopter",
    U"zebra crossing",
    U"xylophone|marimba|glockenspiel",
};

Info searchFor(const std::u32string& text)
{
    Info info(std::set<libType>{});
    info.parseTree = Library::Search::parseSearchTerms(text);
    return info;
}

Info searchForGroups(std::vector<ORGroup> groups)
{
    Info info(std::set<libType>{});
    info.parseTree.groups = std::move(groups);
    return info;
}

Info manyTerms(const std::vector<Entry>& entries)
{
    std::vector<ORGroup> groups;
    for (std::size_t i = 0; groups.size() < 32; i += 97) {
        const std::string& name = entries[i % entries.size()].name;
        ORGroup group;
        group.terms.push_back(StringConvert::toUnicode(name.substr(0, name.find(' ')), StringConvert::Utf8));
        const bool known =
            std::any_of(groups.begin(), groups.end(), [&](const ORGroup& other) { return other == group; });
        if (!known && group.terms.front().size() > 2)
            groups.push_back(group);
    }
    return searchForGroups(std::move(groups));
}

std::string key(const std::string& what, const std::string& peer, std::size_t number = 0)
{
    return what + "|" + peer + "|" + std::to_string(number);
}

/// All measures, kept until the end.
class Measures
{
public:
    explicit Measures(std::vector<Entry> entries)
        : libraries_(std::move(entries)),
          sample_(bench::sample(libraries_, sampleSize)),
          million_(bench::combined(libraries_, 1000000)),
          bulk_(million_, manyTerms(libraries_))
    {}

    bool agree();
    void registerAll();
    bool print(const LeastTimes& times) const;

private:
    static constexpr std::size_t sampleSize = 4096;
    static constexpr std::size_t folderSampleSize = 1024;
    static constexpr std::size_t kibi = 1024;

    void registerCalls();
    void registerMillion();
    void registerLargeTexts();
    void registerManyTerms();
    void registerTrap();
    void registerConstruction();
    void registerParsing();

    std::vector<bench::Measure> rows(const LeastTimes& times) const;

    std::vector<Entry> libraries_;
    std::vector<Entry> sample_;
    std::vector<Entry> million_;
    bench::BulkMeasures bulk_;
    std::map<std::string, std::string> large_;
};

const std::vector<Peer>& allPeers()
{
    static const std::vector<Peer> all = bench::peers();
    return all;
}

bool agreeOn(const Info& info, const std::vector<Entry>& entries, const std::string& what)
{
    const auto own = allPeers().front().make(info);
    for (const Peer& peer : allPeers()) {
        if (!peer.rates)
            continue;
        const auto other = peer.make(info);
        for (const Entry& entry : entries) {
            if (other->item(entry.name, entry.keywords) == own->item(entry.name, entry.keywords) &&
                other->folder(entry.name) == own->folder(entry.name))
                continue;
            std::fprintf(stderr, "%s rates '%s' with '%s' differently for %s\n", peer.name.c_str(), entry.name.c_str(),
                         entry.keywords.c_str(), what.c_str());
            return false;
        }
    }
    return true;
}

bool Measures::agree()
{
    for (const char32_t* const search : searches) {
        if (!agreeOn(searchFor(search), sample_, StringConvert::toStdUtf8String(search)))
            return false;
    }
    return agreeOn(manyTerms(libraries_), sample_, "many terms") && bulk_.agree();
}

void Measures::registerAll()
{
    registerCalls();
    registerMillion();
    registerLargeTexts();
    registerManyTerms();
    registerTrap();
    registerConstruction();
    registerParsing();
    bulk_.registerAll();
}

// The peers of one search run one after the other, so that a change in the machine's speed affects them all.
void Measures::registerCalls()
{
    for (std::size_t i = 0; i < std::size(searches); ++i) {
        for (const Peer& peer : allPeers()) {
            const bool slow = peer.name == "std::regex" || peer.name == "Boost.Regex";
            const std::shared_ptr<Rater> rater = peer.make(searchFor(searches[i]));
            const auto items = [this, rater] {
                for (const Entry& entry : sample_)
                    benchmark::DoNotOptimize(rater->item(entry.name, entry.keywords));
            };
            const auto folders = [this, rater] {
                for (std::size_t j = 0; j < folderSampleSize; ++j)
                    benchmark::DoNotOptimize(rater->folder(sample_[j * 4].name));
            };
            bench::time(key("call", peer.name, i), items, slow ? 2 : 7, slow ? 0 : 0.01);
            bench::time(key("folder", peer.name, i), folders, slow ? 2 : 7, slow ? 0 : 0.003);
        }
    }
}

void Measures::registerMillion()
{
    for (const Peer& peer : allPeers()) {
        if (peer.name != "own" && peer.name != "Hyperscan" && peer.name != "floor")
            continue;
        const std::shared_ptr<Rater> rater = peer.make(searchFor(U"office chair -red"));
        bench::time(
            key("million", peer.name),
            [this, rater] {
                for (const Entry& entry : million_)
                    benchmark::DoNotOptimize(rater->item(entry.name, entry.keywords));
            },
            3, 0);
    }
}

void Measures::registerLargeTexts()
{
    // The large text repeats the small one, so that both need the same work on each byte.
    constexpr std::size_t languageStep = 61;  // names lie together by language; this far apart they are mixed
    std::string block;
    for (std::size_t i = 0; block.size() < 16 * kibi; i += languageStep)
        block += libraries_[i % libraries_.size()].name + ", ";
    block.resize(16 * kibi);
    for (const std::size_t size : {16 * kibi, 1024 * kibi}) {
        std::string& text = large_[std::to_string(size)];
        while (text.size() < size)
            text += block;
        for (const Peer& peer : allPeers()) {
            if (peer.name != "own" && peer.name != "Hyperscan" && peer.name != "floor")
                continue;
            for (std::size_t i = 0; i < std::size(largeSearches); ++i) {
                const std::shared_ptr<Rater> rater = peer.make(searchFor(largeSearches[i]));
                bench::time(
                    key("large" + std::to_string(size), peer.name, i),
                    [&text, rater] { benchmark::DoNotOptimize(rater->item("x", text)); }, 7, 0.02);
            }
        }
    }
}

void Measures::registerManyTerms()
{
    for (const Peer& peer : allPeers()) {
        if (peer.name != "own" && peer.name != "Hyperscan" && peer.name != "floor")
            continue;
        const std::shared_ptr<Rater> rater = peer.make(manyTerms(libraries_));
        bench::time(
            key("many", peer.name),
            [this, rater] {
                for (const Entry& entry : sample_)
                    benchmark::DoNotOptimize(rater->item(entry.name, entry.keywords));
            },
            7, 0.02);
    }
}

void Measures::registerTrap()
{
    ORGroup group;
    group.terms.emplace_back(1 * kibi, U'a');
    const std::shared_ptr<Rater> rater = allPeers().front().make(searchForGroups({group}));
    std::string& text = large_["trap"];
    text.assign(256 * kibi, 'a');
    bench::time(
        key("trap", "own"), [&text, rater] { benchmark::DoNotOptimize(rater->item(text, "")); }, 7, 0.02);
    bench::time(
        key("trap keywords", "own"), [&text, rater] { benchmark::DoNotOptimize(rater->item("", text)); }, 7, 0.02);
}

void Measures::registerConstruction()
{
    for (const Peer& peer : allPeers()) {
        if (peer.name != "own" && peer.name != "std::regex" && peer.name != "Hyperscan")
            continue;
        for (std::size_t i = 0; i < std::size(searches); ++i) {
            const auto build = [make = peer.make, info = searchFor(searches[i])] {
                benchmark::DoNotOptimize(make(info));
            };
            bench::time(key("build", peer.name, i), build, 5, 0.003);
        }
    }
}

std::u32string pairs(int count)
{
    std::u32string text;
    for (int i = 0; i < count; ++i) {
        const auto number = static_cast<char32_t>(U'0' + i);
        text += std::u32string(U"(a") + number + U"|b" + number + U") ";
    }
    return text;
}

void Measures::registerParsing()
{
    bench::time(
        key("parse", "typical"),
        [] { benchmark::DoNotOptimize(Library::Search::parseSearchTerms(U"(office OR desk) chair -red")); }, 7, 0.02);
    bench::time(
        key("parse", "pairs"),
        [text = pairs(10)] { benchmark::DoNotOptimize(Library::Search::parseSearchTerms(text)); }, 7, 0.05);
}

// Geometric means.
double mean(const LeastTimes& times, const std::string& what, const std::string& peer, std::size_t count)
{
    double logs = 0;
    for (std::size_t i = 0; i < count; ++i)
        logs += std::log(times.of(key(what, peer, i)));
    return std::exp(logs / static_cast<double>(count));
}

double ratio(const LeastTimes& times, const std::string& what, const std::string& slow, const std::string& fast,
             std::size_t count)
{
    return mean(times, what, slow, count) / mean(times, what, fast, count);
}

double worstRatio(const LeastTimes& times, const std::string& what, const std::string& slow, const std::string& fast)
{
    double worst = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < std::size(searches); ++i)
        worst = std::min(worst, times.of(key(what, slow, i)) / times.of(key(what, fast, i)));
    return worst;
}

double allocationsPerCall(const std::vector<Entry>& entries)
{
    const LibraryResultCategorizer categorizer(searchFor(U"(office OR desk) chair -red"));
    const std::size_t before = allocations;
    for (const Entry& entry : entries)
        benchmark::DoNotOptimize(categorizer.categorizeItemResult(entry.name, entry.keywords));
    return static_cast<double>(allocations - before) / static_cast<double>(entries.size());
}

// Everything that was allocated while building, including memory that was freed again at its end.
double heapBeyondTexts()
{
    const Info info = searchFor(U"office chair -red");
    const std::size_t texts = 2 * std::string_view("officechairred ").size();
    const std::size_t before = allocatedBytes;
    const LibraryResultCategorizer categorizer(info);
    benchmark::DoNotOptimize(&categorizer);
    return (static_cast<double>(allocatedBytes - before) - static_cast<double>(texts)) / 1024;
}

std::vector<bench::Measure> Measures::rows(const LeastTimes& times) const
{
    const std::size_t all = std::size(searches);
    const std::string little = "large" + std::to_string(16 * kibi);
    const std::string large = "large" + std::to_string(1024 * kibi);
    const std::size_t texts = std::size(largeSearches);
    const double trap = std::max(times.of(key("trap", "own")), times.of(key("trap keywords", "own"))) / 1e6;
    return {
        {"call: times faster than std::regex", ratio(times, "call", "std::regex", "own", all), 150, 250, true, "x"},
        {"call: times faster than Hyperscan", ratio(times, "call", "Hyperscan", "own", all), 1.5, 2.5, true, "x"},
        // Harder than the row above: this peer scans name and keywords at once.
        {"call: times faster than Hyperscan, one scan", ratio(times, "call", "Hyperscan once", "own", all), 1.0, 1.5,
         true, "x"},
        {"call: part of the floor's time", ratio(times, "call", "own", "floor", all), 1.0, 0.5, false, "x"},
        {"slowest search: times faster than std::regex", worstRatio(times, "call", "std::regex", "own"), 100, 110, true,
         "x"},
        {"folder: times faster than std::regex", ratio(times, "folder", "std::regex", "own", all), 60, 90, true, "x"},
        {"1 MiB: part of the floor's time", ratio(times, large, "own", "floor", texts), 1.0, 0.6, false, "x"},
        {"1 MiB: time per byte against 16 KiB",
         mean(times, large, "own", texts) / mean(times, little, "own", texts) / 64, 1.2, 1.05, false, "x"},
        {"32 terms, 32 groups: part of Hyperscan's time", ratio(times, "many", "own", "Hyperscan", 1), 1.5, 0.5, false,
         "x"},
        {"1 KiB of \"a\" in 256 KiB of \"a\"", trap, 1.0, 0.25, false, "ms"},
        {"building: times faster than std::regex", ratio(times, "build", "std::regex", "own", all), 10, 30, true, "x"},
        {"allocations per call", allocationsPerCall(sample_), 0, 0, false, ""},
        {"heap of a categorizer beyond its texts", heapBeyondTexts(), 2, 0.5, false, "KiB"},
        {"parsing a usual search", times.of(key("parse", "typical")) / 1e3, 5, 2, false, "us"},
        {"parsing ten pairs of alternatives", times.of(key("parse", "pairs")) / 1e6, 2, 0.1, false, "ms"},
    };
}

bool Measures::print(const LeastTimes& times) const
{
    std::printf("%-14s %14s %14s %14s\n", "", "item ns/call", "folder ns/call", "building us");
    for (const Peer& peer : allPeers()) {
        const std::size_t all = std::size(searches);
        std::printf("%-14s %14.1f %14.1f", peer.name.c_str(), mean(times, "call", peer.name, all) / sampleSize,
                    mean(times, "folder", peer.name, all) / folderSampleSize);
        const bool built = peer.name == "own" || peer.name == "std::regex" || peer.name == "Hyperscan";
        built ? std::printf(" %14.2f\n", mean(times, "build", peer.name, all) / 1e3) : std::printf("\n");
    }
    std::printf("\n%-40s %10s %10s %10s %10s\n", "search, item ns/call", "own", "floor", "Hyperscan", "std::regex");
    for (std::size_t i = 0; i < std::size(searches); ++i) {
        std::printf("%-40s", StringConvert::toStdUtf8String(searches[i]).c_str());
        for (const char* const peer : {"own", "floor", "Hyperscan", "std::regex"})
            std::printf(" %10.1f", times.of(key("call", peer, i)) / sampleSize);
        std::printf("\n");
    }
    std::printf("\na million names, ms: own %.0f, floor %.0f, Hyperscan %.0f\n", times.of(key("million", "own")) / 1e6,
                times.of(key("million", "floor")) / 1e6, times.of(key("million", "Hyperscan")) / 1e6);
    std::printf("32 terms, ns/call: own %.0f, floor %.0f, Hyperscan %.0f\n", times.of(key("many", "own")) / sampleSize,
                times.of(key("many", "floor")) / sampleSize, times.of(key("many", "Hyperscan")) / sampleSize);
    std::printf("1 MiB, us: own %.0f, floor %.0f, Hyperscan %.0f\n\n", times.of(key("large1048576", "own")) / 1e3,
                times.of(key("large1048576", "floor")) / 1e3, times.of(key("large1048576", "Hyperscan")) / 1e3);

    bulk_.print(times);
    std::vector<bench::Measure> all = rows(times);
    for (bench::Measure& row : bulk_.rows(times))
        all.push_back(std::move(row));
    return bench::printMeasures(all);
}

std::vector<std::string> foldersFrom(int argumentCount, char** arguments)
{
    std::vector<std::string> folders;
    for (int i = 1; i < argumentCount; ++i) {
        if (arguments[i][0] != '-')
            folders.emplace_back(arguments[i]);
    }
    return folders;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    // The machine's speed drifts, so the peers take turns.
    std::vector<char*> withDefaults(arguments, arguments + argumentCount);
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    withDefaults.insert(withDefaults.begin() + 1, interleaving.data());
    withDefaults.push_back(nullptr);
    argumentCount = static_cast<int>(withDefaults.size()) - 1;
    arguments = withDefaults.data();
    benchmark::Initialize(&argumentCount, arguments);
    std::vector<Entry> entries = bench::readLibraries(foldersFrom(argumentCount, arguments));
    if (entries.size() < 10000) {
        std::fprintf(stderr,
                     "Too few names (%zu). Install the packages sweethome3d-furniture and kicad-symbols, or "
                     "give the folders that hold their files.\n",
                     entries.size());
        return 2;
    }
    std::printf("%zu names\n", entries.size());
    Measures measures(std::move(entries));
    if (!measures.agree())
        return 1;
    std::printf("all peers agree on all ratings\n\n");
    measures.registerAll();
    LeastTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    return measures.print(times) ? 0 : 1;
}
