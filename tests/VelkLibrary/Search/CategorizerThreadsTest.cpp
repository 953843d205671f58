#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkLibrary/Search/ParseTree.h>

#include "support/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

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

}  // namespace
