#include "host/installation/IndexSearch.h"
#include "host/installation/SearchIndex.h"

#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include "support/Threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <stop_token>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace VelkHost;

namespace {

LoadedLibrary libraryOf(const std::string& name, const std::vector<std::string>& items,
                        const std::vector<std::string>& folders = {})
{
    Catalog catalog;
    catalog.name = name;
    for (const std::string& folder : folders)
        catalog.folders.push_back({Folder::noParent, folder});
    for (const std::string& item : items)
        catalog.items.push_back({item, 0, item, "", "", {}});
    return {fileString(name), std::make_shared<const Catalog>(std::move(catalog))};
}

SearchRequest requestFor(const std::string& text)
{
    SearchRequest request;
    request.text = text;
    return request;
}

using Row = std::tuple<int, std::size_t, bool, std::size_t>;  // priority, library, whether a folder, index

std::vector<Row> rowsOf(const SearchResult& result)
{
    std::vector<Row> rows;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const Hit hit = result.hit(i);
        rows.emplace_back(hit.priority, hit.library, hit.isFolder, hit.index);
    }
    return rows;
}

/// "1A/Chair|" for each hit: the number of the library's place, its name and that of the hit.
std::string found(const SearchIndex& index, const std::string& text)
{
    const SearchRequest request = requestFor(text);
    const SearchResult result = searchIndex(index.state(), request, searchInfo(request));
    std::string rows;
    for (std::size_t i = 0; i < result.size(); ++i) {
        const Hit hit = result.hit(i);
        const Catalog& catalog = *result.state->libraries()[hit.library]->catalog;
        rows += std::to_string(hit.library) + catalog.name + "/" + hitName(catalog, hit) + "|";
    }
    return rows;
}

// ---- The same in a plain way: entry by entry, then sorted by what the order goes by ---------------

class PlainSearch
{
public:
    PlainSearch(const std::vector<LoadedLibrary>& libraries, const SearchRequest& request,
                const Library::Search::Info& info, const std::vector<bool>& leftOut)
        : libraries_(libraries), request_(request), info_(info), categorizer_(info)
    {
        for (std::size_t i = 0; i < libraries.size(); ++i)
            if (!leftOut[i] && (request.types.empty() || request.types.contains(toLibType(libraries[i].catalog->kind))))
                rate(i);
        std::stable_sort(hits_.begin(), hits_.end(),
                         [](const Found& left, const Found& right) { return left.first < right.first; });
    }

    std::vector<Row> rows() const
    {
        std::vector<Row> rows;
        for (const Found& hit : hits_)
            rows.push_back(hit.second);
        return rows;
    }

private:
    using Key = std::tuple<int, std::string, std::string>;  // priority, lower-case name, name of the library
    using Found = std::pair<Key, Row>;

    void rate(std::size_t library)
    {
        const Catalog& catalog = *libraries_[library].catalog;
        if (!info_.uniqueId.empty()) {
            for (std::size_t i = 0; i < catalog.items.size(); ++i)
                if (catalog.items[i].uniqueId == info_.uniqueId)
                    add({Invalid, library, false, i});
            return;
        }
        for (std::size_t i = 0; request_.folders && i < catalog.folders.size(); ++i)
            keep({categorizer_.categorizeFolderResult(catalog.folders[i].name), library, true, i});
        for (std::size_t i = 0; request_.items && i < catalog.items.size(); ++i)
            keep({categorizer_.categorizeItemResult(catalog.items[i].name, catalog.items[i].keywords), library, false,
                  i});
    }

    void keep(const Row& row)
    {
        if (std::get<0>(row) != Invalid)
            add(row);
    }

    void add(const Row& row)
    {
        const auto& [priority, library, isFolder, index] = row;
        const Catalog& catalog = *libraries_[library].catalog;
        const Hit hit = {Invalid, isFolder, library, index};
        const std::string& name = hitName(catalog, hit);
        hits_.push_back({{priority, StringUtils::toLowerUtf8(name), catalog.name}, row});
    }

    const std::vector<LoadedLibrary>& libraries_;
    const SearchRequest& request_;
    const Library::Search::Info& info_;
    LibraryResultCategorizer categorizer_;
    std::vector<Found> hits_;
};

// ---- Random libraries and searches ----------------------------------------------------------------

class Chance
{
public:
    explicit Chance(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t end) { return random_() % end; }
    bool oneIn(std::size_t chances) { return below(chances) == 0; }

    /// Few letters and common beginnings, so that many names are equal or share a long beginning.
    std::string name()
    {
        static const std::vector<std::string> beginnings{"",
                                                         "chair ",
                                                         "Chair number ",
                                                         "Chair number 000000",
                                                         "STUHL \u00C4",
                                                         "eight ch",
                                                         "twice eight char",
                                                         "Chair " + std::string(70, 'r')};
        static const std::vector<std::string> letters{"a",    "A",      "b", std::string(1, '\0'), "\u00FC", "\u00DC",
                                                      "\xFF", "\u6905", "\n"};
        std::string name = beginnings[below(beginnings.size())];
        for (std::size_t length = below(4); length > 0; --length)
            name += letters[below(letters.size())];
        return name;
    }

    /// One with so many items at most, and a quarter as many folders.
    LoadedLibrary library(std::size_t most)
    {
        Catalog catalog;
        catalog.name = std::string(1, static_cast<char>('k' + below(4)));
        catalog.kind = oneIn(2) ? LibraryKind::Core : LibraryKind::User;
        for (std::size_t i = below(most / 4 + 1); i > 0; --i)
            catalog.folders.push_back({Folder::noParent, name()});
        for (std::size_t i = most - below(most > large ? most / 8 : most + 1); i > 0; --i)
            catalog.items.push_back({name(), 0, name(), oneIn(2) ? name() : "", "", {}});
        return {fileString(catalog.name), std::make_shared<const Catalog>(std::move(catalog))};
    }

    SearchRequest request()
    {
        static const std::vector<std::string> texts{
            "a",   "chair", "chair -b", "\"number 0\"", "a OR b OR \u00FC",         "r n -a",
            "zzz", "",      "-a",       "stuhl \u00E4", "(a OR b) (chair OR stuhl)"};
        SearchRequest request = requestFor(texts[below(texts.size())]);
        request.legacy = oneIn(5);
        request.folders = !oneIn(5);
        request.items = !oneIn(5);
        if (oneIn(4))
            request.types = {toLibType(LibraryKind::Core)};
        if (oneIn(8))
            request.uniqueId = name();
        return request;
    }

private:
    static constexpr std::size_t large = 1'000;  // from here on a library is about as large as asked for

    std::mt19937 random_;
};

void expectPlainResults(const SearchIndex& index, const std::vector<LoadedLibrary>& libraries, Chance& chance)
{
    const SearchRequest request = chance.request();
    const Library::Search::Info info = searchInfo(request);
    std::vector<bool> leftOut(libraries.size());
    for (std::size_t i = 0; i < leftOut.size(); ++i)
        leftOut[i] = chance.oneIn(6);
    const SearchResult result = searchIndex(index.state(), request, info, leftOut);
    ASSERT_EQ(rowsOf(result), PlainSearch(libraries, request, info, leftOut).rows()) << request.text;
}

// Only what fits into a room

class FittingHits : public testing::Test
{
protected:
    FittingHits()
    {
        Catalog catalog;
        catalog.name = "A";
        catalog.folders.push_back({Folder::noParent, "chair"});
        for (const char* const name : {"chair", "chair arm", "chair bar", "chair cot", "armchair"})
            catalog.items.push_back({name, 0, name, "", "", {}});
        catalog.sizes = {{505, 584, 850}, {900, 900, 900}, {}, {584, 505, 850}, {400, 400, 0}};
        index_.setLibraries({{fileString(std::string("A")), std::make_shared<const Catalog>(std::move(catalog))}});
    }

    SearchResult find(const RoomToFit& room, const std::string& text = "chair") const
    {
        SearchRequest request = requestFor(text);
        request.room = room;
        return searchIndex(index_.state(), request, searchInfo(request));
    }

    std::vector<std::string> names(const SearchResult& result) const
    {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < result.size(); ++i)
            names.push_back(hitName(*result.state->libraries()[0]->catalog, result.hit(i)));
        return names;
    }

    /// That of the item with that index.
    static SearchPriority priorityOf(const SearchResult& result, std::size_t item)
    {
        for (std::size_t i = 0; i < result.size(); ++i)
            if (!result.hit(i).isFolder && result.hit(i).index == item)
                return result.hit(i).priority;
        return Invalid;
    }

    SearchIndex index_;
};

TEST_F(FittingHits, KeepTheirOrderAndGroups)
{
    const SearchResult all = find({});
    const SearchResult fitting = find({600, 510, 0});
    EXPECT_EQ(names(fitting), (std::vector<std::string>{"chair", "chair cot", "armchair"}));
    EXPECT_EQ(fitting.tooLarge, 1U);
    EXPECT_EQ(fitting.withoutSize, 1U);
    for (std::size_t i = 0; i < fitting.size(); ++i) {
        const Hit hit = fitting.hit(i);
        EXPECT_FALSE(hit.isFolder);
        EXPECT_EQ(priorityOf(all, hit.index), hit.priority) << hit.index;
    }
    std::size_t end = 0;
    for (const SearchResult::Group& group : fitting.groups) {
        EXPECT_EQ(group.begin, end);
        EXPECT_GT(group.end, group.begin);
        end = group.end;
    }
    EXPECT_EQ(end, fitting.size());
}

TEST_F(FittingHits, AreNoneWhereNothingFits)
{
    const SearchResult none = find({1, 1, 1});
    EXPECT_EQ(none.size(), 0U);
    EXPECT_TRUE(none.groups.empty());
    EXPECT_EQ(none.tooLarge, 4U);
    EXPECT_EQ(none.withoutSize, 1U);
}

TEST_F(FittingHits, CountNothingWithoutARoom)
{
    const SearchResult all = find({});
    EXPECT_EQ(all.size(), 6U);
    EXPECT_EQ(all.tooLarge + all.withoutSize, 0U);
}

}  // namespace

// ---- The order -----------------------------------------------------------------------------------

TEST(SearchIndex, HoldsNothingAtFirst)
{
    EXPECT_EQ(found(SearchIndex(), "a"), "");
}

TEST(SearchIndex, ReadsNamesToTheirEnd)
{
    SearchIndex index;
    index.setLibraries({libraryOf(
        "A", {"Cupboard with doors 2", "Cupboard with doors 10", "Cupboard with door", "Cupboard with doors"})});
    EXPECT_EQ(found(index, "door"),
              "0A/Cupboard with door|0A/Cupboard with doors|0A/Cupboard with doors 10|0A/Cupboard with doors 2|");
}

TEST(SearchIndex, GoesByTheLibrarysNameThenByItsPlace)
{
    SearchIndex index;
    index.setLibraries({libraryOf("b", {"Chair"}), libraryOf("a", {"CHAIR"}), libraryOf("b", {"chair"}, {"Chair"})});
    EXPECT_EQ(found(index, "chair"), "1a/CHAIR|0b/Chair|2b/chair|2b/Chair|");
}

TEST(SearchIndex, FollowsLibrariesThatChangePlaces)
{
    SearchIndex index;
    std::vector<LoadedLibrary> libraries{libraryOf("a", {"Chair"}), libraryOf("a", {"CHAIR"})};
    index.setLibraries(libraries);
    EXPECT_EQ(found(index, "chair"), "0a/Chair|1a/CHAIR|");
    std::swap(libraries[0], libraries[1]);
    index.setLibraries(libraries);
    EXPECT_EQ(found(index, "chair"), "0a/CHAIR|1a/Chair|");
}

// ---- Changes -------------------------------------------------------------------------------------

TEST(SearchIndex, ForgetsWhatItHoldsNoMore)
{
    SearchIndex index;
    const LoadedLibrary stays = libraryOf("b", {"Chair"});
    index.setLibraries({libraryOf("a", {"Chair"}), stays});
    index.setLibraries({stays});
    EXPECT_EQ(found(index, "chair"), "0b/Chair|");
    index.setLibraries({});
    EXPECT_EQ(found(index, "chair"), "");
}

TEST(SearchIndex, KeepsNoCatalogThatItHoldsNoMore)
{
    SearchIndex index;
    std::vector<LoadedLibrary> libraries;
    for (int i = 0; i < 10; ++i)
        libraries.push_back(libraryOf(std::to_string(i), {"Chair"}));
    index.setLibraries(libraries);
    const std::weak_ptr<const Catalog> gone = libraries.back().catalog;
    libraries.pop_back();
    index.setLibraries(libraries);
    EXPECT_TRUE(gone.expired());
}

TEST(SearchIndex, MakesNothingAgainThatItHolds)
{
    SearchIndex index;
    std::vector<LoadedLibrary> libraries{libraryOf("a", {"Chair"})};
    index.setLibraries(libraries);
    const std::shared_ptr<const IndexState> before = index.state();
    libraries.push_back(libraryOf("big", std::vector<std::string>(40'000, "Desk")));
    index.setLibraries(libraries);
    EXPECT_EQ(index.state()->slots()[0].block, before->slots()[0].block);
    EXPECT_EQ(index.state()->libraries()[0], before->libraries()[0]);
}

// As it is told at each key.
TEST(SearchIndex, StaysAsItIsWhereNothingChanged)
{
    SearchIndex index;
    const std::vector<LoadedLibrary> libraries{libraryOf("a", {"Chair"}), libraryOf("b", {"Desk"})};
    index.setLibraries(libraries, SearchIndex::Order::None);
    const std::shared_ptr<const IndexState> unordered = index.state();
    index.setLibraries(libraries);
    const std::shared_ptr<const IndexState> ordered = index.state();
    EXPECT_NE(ordered, unordered);
    index.setLibraries(libraries);
    EXPECT_EQ(index.state(), ordered);
}

TEST(SearchIndex, TakesThePlaceOfALibraryThatHasChanged)
{
    SearchIndex index;
    index.setLibraries({libraryOf("a", {"Chair"}), libraryOf("b", {"Chair"})});
    index.setLibraries({libraryOf("a", {"Armchair", "Chair 2"}), libraryOf("b", {"Chair"})});
    EXPECT_EQ(found(index, "chair"), "1b/Chair|0a/Chair 2|0a/Armchair|");
}

TEST(SearchIndex, AgreesWithAPlainSearchAfterAnyChanges)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        Chance chance(seed);
        SearchIndex index;
        std::vector<LoadedLibrary> libraries;
        for (int round = 0; round < 25; ++round) {
            for (std::size_t i = chance.below(6); i > 0; --i)
                libraries.insert(libraries.begin() + static_cast<std::ptrdiff_t>(chance.below(libraries.size() + 1)),
                                 chance.library(60));
            for (std::size_t i = chance.below(5); i > 0 && !libraries.empty(); --i)
                libraries.erase(libraries.begin() + static_cast<std::ptrdiff_t>(chance.below(libraries.size())));
            if (!libraries.empty())
                libraries[chance.below(libraries.size())] = chance.library(60);
            if (chance.oneIn(5) && libraries.size() > 1)
                std::swap(libraries.front(), libraries.back());
            index.setLibraries(libraries, chance.oneIn(6) ? SearchIndex::Order::None : SearchIndex::Order::Kept);
            for (int search = 0; search < 4; ++search)
                ASSERT_NO_FATAL_FAILURE(expectPlainResults(index, libraries, chance)) << "seed " << seed;
        }
    }
}

TEST(SearchIndex, AgreesWithAPlainSearchInLargeAndSmallLibraries)
{
    Chance chance(1);
    SearchIndex index;
    std::vector<LoadedLibrary> libraries;
    for (const std::size_t most : {80'000U, 500U, 40'000U, 500U, 20'000U})
        libraries.push_back(chance.library(most));
    index.setLibraries(libraries);
    for (int search = 0; search < 3; ++search)
        ASSERT_NO_FATAL_FAILURE(expectPlainResults(index, libraries, chance));
    libraries.erase(libraries.begin());
    libraries[1] = chance.library(80'000);
    index.setLibraries(libraries);
    for (int search = 0; search < 3; ++search)
        ASSERT_NO_FATAL_FAILURE(expectPlainResults(index, libraries, chance));
}

// ---- Threads -------------------------------------------------------------------------------------

TEST(SearchIndex, EndsWithoutHitsWhenItIsStopped)
{
    SearchIndex index;
    index.setLibraries({libraryOf("a", std::vector<std::string>(10'000, "Chair"))});
    std::stop_source stop;
    stop.request_stop();
    const SearchRequest request = requestFor("chair");
    EXPECT_EQ(searchIndex(index.state(), request, searchInfo(request), {}, stop.get_token()).size(), 0U);
}

// Each state has one library more or less than the one before, with one more hit.
TEST(SearchIndex, IsSearchedInOneStateWhileItChanges)
{
    std::vector<LoadedLibrary> libraries;
    for (int i = 0; i < 40; ++i)
        libraries.push_back(libraryOf(std::to_string(i), {"Chair", "Desk"}));
    SearchIndex index;
    const test::Repeatedly searching([&] {
        const std::shared_ptr<const IndexState> state = index.state();
        const SearchRequest request = requestFor("chair");
        ASSERT_EQ(searchIndex(state, request, searchInfo(request)).size(), state->libraries().size());
    });
    for (int round = 0; round < 5; ++round)
        for (std::size_t count = 0; count <= libraries.size(); ++count)
            index.setLibraries({libraries.begin(), libraries.begin() + static_cast<std::ptrdiff_t>(count)});
}
