#include "BulkMeasures.h"

#include "RaterParts.h"

#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <cstdio>
#include <span>
#include <thread>
#include <utility>

using Library::Search::Info;
using Library::Search::ORGroup;
using Library::Search::PreparedNames;

namespace bench {
namespace {

// What one of several threads takes at a time.
constexpr std::size_t share = 1 << 15;

struct Typed
{
    const char* name;
    const char32_t* text;
    bool hasPeers = false;
    bool isLegacy = false;
};

constexpr Typed typed[] = {
    {"no hit", U"glockenspiel", true},
    {"rare word", U"xylophone", true},
    {"office", U"office", true},
    {"o", U"o"},
    {"of", U"of", true},
    {"office chair", U"office chair"},
    {"xylophone a", U"xylophone a"},
    {"a", U"a", true},
    {"e", U"e", true},
    {"3", U"3", true},
    {"z", U"z", true},
    {"я", U"я", true},
    {"a e", U"a e"},
    {"e -a", U"e -a"},
    {"five ORs", U"office|sofa|regulator|wardrobe|connector", true},
    {"32 letters", U"a|b|c|d|e|f|g|h|i|j|k|l|m|n|o|p|q|r|s|t|u|v|w|x|y|z|0|1|2|3|4|5"},
    {"ten pairs", U"(a|b) (c|d) (e|f) (g|h) (i|j) (k|l) (m|n) (o|p) (q|r) (s|t)"},
    {"chair, words", U"chair", false, true},
    {"a, words", U"a", false, true},
};

Info searchFor(const Typed& search)
{
    Info info(std::set<libType>{});
    info.parseTree = Library::Search::parseSearchTerms(search.text);
    info.legacySearch = search.isLegacy;
    return info;
}

std::vector<std::string> literalsOf(const Info& info)
{
    std::vector<std::string> literals;
    for (const ORGroup& group : info.parseTree.groups)
        literals.push_back(lowered(group.terms.front()));
    return literals;
}

PreparedNames preparedFrom(const std::vector<Entry>& entries)
{
    std::size_t bytes = 0;
    for (const Entry& entry : entries)
        bytes += entry.name.size() + entry.keywords.size();
    PreparedNames names;
    names.reserve(entries.size(), bytes);
    for (const Entry& entry : entries)
        names.addItem(entry.name, entry.keywords);
    names.close();
    return names;
}

std::string key(const std::string& search, const char* way)
{
    return "bulk|" + search + "|" + way;
}

// Every `threads`-th share from the given one on.
void rateShares(const LibraryResultCategorizer& categorizer, const PreparedNames& names,
                std::span<std::uint8_t> priorities, std::size_t first, std::size_t threads)
{
    for (std::size_t at = first * share; at < priorities.size(); at += threads * share)
        categorizer.categorize(names, at, priorities.subspan(at, std::min(share, priorities.size() - at)));
}

}  // namespace

BulkMeasures::BulkMeasures(const std::vector<Entry>& entries, const Info& manyTerms)
    : entries_(entries), names_(preparedFrom(entries)), priorities_(entries.size())
{
    for (const Entry& entry : entries) {
        const std::string name = StringUtils::toLowerUtf8(entry.name);
        const std::string keywords = StringUtils::toLowerUtf8(entry.keywords);
        for (const std::string& text : {name, keywords}) {
            block_ += text;
            block_.append(8 - text.size() % 8, '\xFF');
        }
        texts_.push_back(name + '\n' + keywords);
    }
    index_ = std::make_unique<TrigramIndex>(texts_);
    for (const Typed& search : typed)
        searches_.push_back({search.name, searchFor(search), search.hasPeers});
    searches_.push_back({"32 ORs", manyTerms, true});
}

bool BulkMeasures::agree()
{
    for (Search& search : searches_) {
        const LibraryResultCategorizer categorizer(search.info);
        categorizer.categorize(names_, 0, priorities_);
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            const Entry& entry = entries_[i];
            if (priorities_[i] != categorizer.categorizeItemResult(entry.name, entry.keywords)) {
                std::fprintf(stderr, "'%s' with '%s' is rated differently in bulk for %s\n", entry.name.c_str(),
                             entry.keywords.c_str(), search.name.c_str());
                return false;
            }
        }
        search.hits = entries_.size() - static_cast<std::size_t>(std::count(priorities_.begin(), priorities_.end(), 0));
        const BulkSearch indexed = search.hasPeers ? index_->search(literalsOf(search.info)) : nullptr;
        if (indexed && indexed() != search.hits) {
            std::fprintf(stderr, "the index of trigrams finds %zu entries for %s, not %zu\n", indexed(),
                         search.name.c_str(), search.hits);
            return false;
        }
    }
    return true;
}

void BulkMeasures::registerAll()
{
    time(
        key("", "memchr"), [pass = memchrOver(block_)] { benchmark::DoNotOptimize(pass()); }, 15, 0);
    time(
        key("", "prepare"), [this] { benchmark::DoNotOptimize(preparedFrom(entries_)); }, 3, 0);
    for (const Search& search : searches_) {
        const LibraryResultCategorizer categorizer(search.info);
        time(
            key(search.name, "own"), [this, categorizer] { categorizer.categorize(names_, 0, priorities_); }, 9, 0);
        // The threads have even shares, so the time of this one is that of both.
        const auto withTwo = [this, categorizer] {
            std::thread other([&] { rateShares(categorizer, names_, priorities_, 1, 2); });
            rateShares(categorizer, names_, priorities_, 0, 2);
            other.join();
        };
        time(key(search.name, "two"), withTwo, 7, 0);
        const auto oneByOne = [this, categorizer] {
            for (const Entry& entry : entries_)
                benchmark::DoNotOptimize(categorizer.categorizeItemResult(entry.name, entry.keywords));
        };
        time(key(search.name, "one by one"), oneByOne, 2, 0);
        if (search.hasPeers)
            registerPeers(search);
    }
}

void BulkMeasures::registerPeers(const Search& search)
{
    const std::vector<std::string> literals = literalsOf(search.info);
    const auto timePeer = [&](const char* peer, const BulkSearch& pass, int repetitions) {
        if (pass)
            time(
                key(search.name, peer), [pass] { benchmark::DoNotOptimize(pass()); }, repetitions, 0);
    };
    timePeer("Hyperscan", hyperscanOver(block_, literals), 7);
    timePeer("RE2", re2Over(block_, literals), 2);
    timePeer("FTS5", index_->search(literals), 5);
}

double BulkMeasures::milliseconds(const LeastTimes& times, const std::string& search, const char* way) const
{
    return times.of(key(search, way)) / 1e6;
}

void BulkMeasures::print(const LeastTimes& times) const
{
    std::printf(
        "\nA million prepared entries, %zu MB of texts; ms. The peers find places or entries, and rate nothing.\n",
        block_.size() / 1000000);
    std::printf("%-16s %9s %9s %9s %11s %10s %9s %9s\n", "search", "hits", "own", "2 threads", "one by one",
                "Hyperscan", "RE2", "FTS5");
    for (const Search& search : searches_) {
        std::printf("%-16s %9zu", search.name.c_str(), search.hits);
        for (const char* const way : {"own", "two", "one by one", "Hyperscan", "RE2", "FTS5"}) {
            const int width = std::string_view(way) == "one by one"  ? 11
                              : std::string_view(way) == "Hyperscan" ? 10
                                                                     : 9;
            if (times.has(key(search.name, way)))
                std::printf(" %*.1f", width, milliseconds(times, search.name, way));
            else
                std::printf(" %*s", width, "-");
        }
        std::printf("\n");
    }
    std::printf("memchr over the same bytes %.2f ms; the index of trigrams takes %zu bytes an item\n\n",
                milliseconds(times, "", "memchr"), index_->bytes() / entries_.size());
}

std::vector<Measure> BulkMeasures::rows(const LeastTimes& times) const
{
    const auto own = [&](const char* search) { return milliseconds(times, search, "own"); };
    const double bound = milliseconds(times, "", "memchr");
    const double letters = std::max({own("a"), own("e"), own("3"), own("z"), own("я")});
    return {
        {"a million, no hit: times memchr", own("no hit") / bound, 3, 2.5, false, "x"},
        {"a million, rare word: times memchr", own("rare word") / bound, 3, 2.5, false, "x"},
        {"a million, slowest single letter", letters, 25, 18, false, "ms"},
        {"a million, five ORs", own("five ORs"), 25, 18, false, "ms"},
        {"a million, 32 ORs", own("32 ORs"), 80, 40, false, "ms"},
        {"a million, ten pairs, two threads", milliseconds(times, "ten pairs", "two"), 900, 150, false, "ms"},
        {"preparing a million", milliseconds(times, "", "prepare"), 300, 150, false, "ms"},
        // All memory that the prepared names hold: texts, their ends, word characters, reserve.
        {"prepared, bytes an item", static_cast<double>(names_.memory()) / static_cast<double>(names_.size()), 135, 129,
         false, ""},
    };
}

}  // namespace bench
