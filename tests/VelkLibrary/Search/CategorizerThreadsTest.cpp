#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkLibrary/Search/ParseTree.h>

#include "PreparedEntries.h"
#include "support/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <string>
#include <vector>

namespace {

TEST(CategorizerThreads, OneServesMany)
{
    Library::Search::Info info(std::set<libType>{});
    info.parseTree = Library::Search::parseSearchTerms(U"(chair|café) -red");
    const LibraryResultCategorizer categorizer(info);
    std::atomic<int> mistakes{0};
    test::onThreads(8, [&](std::size_t thread) {
        for (unsigned i = 0; i < 500; ++i) {
            const std::string filler((thread * 37 + i * 11) % 3000, '\xE9');
            const bool right = categorizer.categorizeItemResult(filler + " Chair") == ItemContainsWord &&
                               categorizer.categorizeItemResult(filler, filler + " CAFÉ.") == KeywordsContainSequence &&
                               categorizer.categorizeItemResult("chair", filler + "red") == Invalid &&
                               categorizer.categorizeFolderResult("x" + filler) == Invalid;
            mistakes += right ? 0 : 1;
        }
    });
    EXPECT_EQ(mistakes, 0);
}

// All begin at once, so they also prepare the search for it at once.
TEST(CategorizerThreads, OneRatesInBulkForMany)
{
    std::vector<test::PreparedEntry> entries;
    for (std::size_t i = 0; i < 4000; ++i)
        entries.push_back(i % 3 == 0   ? test::itemEntry("Red chair", "seat")
                          : i % 3 == 1 ? test::itemEntry("Café")
                                       : test::folderEntry("Chairs"));
    const Library::Search::PreparedNames names = test::prepared(entries);
    const LibraryResultCategorizer categorizer = [] {
        Library::Search::Info info(std::set<libType>{});
        info.parseTree = Library::Search::parseSearchTerms(U"(chair|café) -red");
        return LibraryResultCategorizer(info);
    }();
    std::atomic<int> mistakes{0};
    test::onThreads(8, [&](std::size_t thread) {
        const std::size_t begin = thread * 500;
        const std::vector<SearchPriority> ratings = test::ratingsInBulk(categorizer, names, begin, 500);
        for (std::size_t i = 0; i < ratings.size(); ++i)
            mistakes += ratings[i] == test::ratingByName(categorizer, entries[begin + i]) ? 0 : 1;
    });
    EXPECT_EQ(mistakes, 0);
}

}  // namespace
