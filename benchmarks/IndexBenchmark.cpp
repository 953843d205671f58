// How soon the results of a search among a million items are ready, for each key of what people type, and how long it
// takes to hold libraries. Beside it stands a search entry by entry, whose hits are sorted afterwards. Arguments:
// folders to look for libraries in, instead of the system's.
#include "LibraryNames.h"
#include "ReadingMeasures.h"
#include "TypedSearches.h"

#include "host/installation/IndexSearch.h"
#include "host/installation/SearchIndex.h"

#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace VelkHost;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t million = 1'000'000;
constexpr std::size_t smallLibraries = 10'000;
constexpr std::size_t itemsInFolder = 500;
constexpr int rounds = 5;

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

LoadedLibrary libraryOf(const std::string& name, const std::vector<bench::Entry>& entries, std::size_t begin,
                        std::size_t end)
{
    Catalog catalog;
    catalog.id = catalog.name = name;
    for (std::size_t i = begin; i < end; ++i) {
        if (i % itemsInFolder == 0 || i == begin)
            catalog.folders.push_back({Folder::noParent, "Folder " + std::to_string(i)});
        catalog.items.push_back({std::to_string(i), 0, entries[i].name, entries[i].keywords, {}, {}});
    }
    return {fileString(name), std::make_shared<const Catalog>(std::move(catalog))};
}

std::vector<LoadedLibrary> libraries(const std::vector<bench::Entry>& entries, std::size_t count)
{
    std::vector<LoadedLibrary> libraries;
    for (std::size_t i = 0; i < count; ++i)
        libraries.push_back(libraryOf("Library " + std::to_string(i), entries, entries.size() * i / count,
                                      entries.size() * (i + 1) / count));
    return libraries;
}

/// A search entry by entry; the number of hits.
std::size_t plainSearch(const std::vector<LoadedLibrary>& libraries, const Library::Search::Info& info)
{
    const LibraryResultCategorizer categorizer(info);
    std::vector<std::pair<int, std::string>> hits;
    const auto keep = [&](SearchPriority priority, const std::string& name) {
        if (priority != Invalid)
            hits.emplace_back(priority, StringUtils::toLowerUtf8(name));
    };
    for (const LoadedLibrary& library : libraries) {
        for (const Folder& folder : library.catalog->folders)
            keep(categorizer.categorizeFolderResult(folder.name), folder.name);
        for (const Item& item : library.catalog->items)
            keep(categorizer.categorizeItemResult(item.name, item.keywords), item.name);
    }
    std::sort(hits.begin(), hits.end());
    return hits.size();
}

double leastTime(const std::shared_ptr<const IndexState>& state, const SearchRequest& request,
                 const Library::Search::Info& info, SearchResult& result)
{
    double least = 1e9;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = Clock::now();
        SearchResult next = searchIndex(state, request, info);
        least = std::min(least, millisecondsSince(begin));
        result = std::move(next);
    }
    return least;
}

/// Prints a line for each search; whether all hold their gates.
bool printSearches(const std::vector<LoadedLibrary>& libraries, const SearchIndex& index)
{
    bool good = true;
    std::printf("%-32s %9s %9s %9s %12s %6s\n", "search", "hits", "ready ms", "rating", "by entry ms", "gate");
    for (const bench::TypedSearch& search : bench::typedSearches()) {
        SearchRequest request;
        request.text = search.text;
        request.legacy = search.legacy;
        const Library::Search::Info info = searchInfo(request);
        SearchResult result;
        const double ready = leastTime(index.state(), request, info, result);
        const auto begin = Clock::now();
        const std::size_t expected = plainSearch(libraries, info);
        const double plain = millisecondsSince(begin);
        good = good && ready <= search.gate && expected == result.size();
        std::printf("%-32.32s %9zu %9.1f %9.1f %12.1f %6.0f%s\n", search.text.c_str(), result.size(), ready,
                    result.milliseconds, plain, search.gate,
                    expected != result.size() ? " OTHER HITS"
                    : ready > search.gate     ? " MISSED"
                                              : "");
    }
    return good;
}

/// The longest time between a stop and the end of a search, in ms.
double stoppingTime(const SearchIndex& index)
{
    SearchRequest request;
    request.text = "(a OR b) (c OR d) (e OR f) (g OR h) (i OR j) (k OR l)";
    const Library::Search::Info info = searchInfo(request);
    double longest = 0;
    for (int round = 1; round <= 10; ++round) {
        std::stop_source stop;
        std::thread searching([&] { searchIndex(index.state(), request, info, {}, stop.get_token()); });
        std::this_thread::sleep_for(std::chrono::milliseconds(2 * round));
        const auto begin = Clock::now();
        stop.request_stop();
        searching.join();
        longest = std::max(longest, millisecondsSince(begin));
    }
    return longest;
}

void printChanges(const std::vector<LoadedLibrary>& libraries, std::size_t batch)
{
    SearchIndex index;
    double longest = 0;
    const auto begin = Clock::now();
    for (std::size_t count = batch; count <= libraries.size(); count += batch) {
        const auto change = Clock::now();
        index.setLibraries({libraries.begin(), libraries.begin() + static_cast<std::ptrdiff_t>(count)});
        longest = std::max(longest, millisecondsSince(change));
    }
    std::printf("%zu libraries, %5zu at a time: %.0f ms together, %.1f ms for the longest change\n", libraries.size(),
                batch, millisecondsSince(begin), longest);
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const std::vector<bench::Entry> real = bench::readLibraries({arguments + 1, arguments + argumentCount});
    if (real.empty()) {
        std::fprintf(stderr, "There are no libraries in these folders.\n");
        return 1;
    }
    const std::vector<bench::Entry> entries = bench::combined(real, million);
    const std::vector<LoadedLibrary> one = libraries(entries, 1);
    const bool isReadingGood = bench::printReading(*one.front().catalog);
    SearchIndex index;
    for (const SearchIndex::Order order : {SearchIndex::Order::None, SearchIndex::Order::Kept}) {
        SearchIndex fresh;
        const auto begin = Clock::now();
        fresh.setLibraries(one, order);
        std::printf("a million items made ready %s: %.0f ms\n",
                    order == SearchIndex::Order::None ? "without an order" : "in order", millisecondsSince(begin));
    }
    index.setLibraries(one);
    const bool areSearchesGood = printSearches(one, index);
    const double stopping = stoppingTime(index);
    std::printf("a search of 64 groups ends %.1f ms after it is stopped (gate 2)\n", stopping);
    const std::vector<LoadedLibrary> many = libraries(entries, smallLibraries);
    for (const std::size_t batch : {smallLibraries, smallLibraries / 10, smallLibraries / 100})
        printChanges(many, batch);
    return isReadingGood && areSearchesGood && stopping <= 2 ? 0 : 1;
}
