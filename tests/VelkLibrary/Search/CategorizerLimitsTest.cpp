#include "CategorizerCalls.h"
#include "PreparedEntries.h"
#include "support/CountedMemory.h"
#include "support/SmallStack.h"

#include <VelkCommon/Text/LowerCase.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <locale>
#include <new>
#include <string>
#include <vector>

using namespace test;
using namespace std::string_literals;

namespace {

TEST(Categorizer, AllocatesNothingForUsualTexts)
{
    const LibraryResultCategorizer some(searchFor(U"(chair|café) -red | (a|b|c) (d|e) -f | стол"));
    const std::string name = std::string(256, 'n') + " Chair";
    const std::string keywords(512, 'K');
    const std::string unusual(100000, 'U');
    some.categorizeItemResult(unusual, unusual);
    const std::size_t before = allocations;
    some.categorizeItemResult(name, keywords);
    some.categorizeItemResult(keywords);
    some.categorizeFolderResult(keywords);
    EXPECT_EQ(allocations, before);
    some.categorizeItemResult(unusual, unusual);
    EXPECT_EQ(allocations, before) << "the memory for large texts is kept";
}

TEST(Categorizer, AllocatesNothingInANewThreadForUsualTexts)
{
    const LibraryResultCategorizer chair(searchFor(U"chair -red"));
    const std::string text(512, 'K');
    const std::size_t before = allocations;
    chair.categorizeItemResult(text, text);
    EXPECT_EQ(allocations, before);
}

TEST(Categorizer, IsSmall)
{
    const Info info = searchFor(U"office chair -red");
    const std::size_t before = allocatedBytes;
    const LibraryResultCategorizer some(info);
#ifndef _WIN32  // where each module has its own operator new
    EXPECT_GT(allocatedBytes - before, 0U);
#endif
    EXPECT_LT(allocatedBytes - before, 2048U) << "everything that was needed to build it included";
    EXPECT_EQ(some.categorizeItemResult("office chair"), ItemExactName);
}

const std::vector<PreparedEntry> someEntries = {itemEntry("Office chair", "seat"), itemEntry("table\nlamp"),
                                                folderEntry("Chairs"), itemEntry("red chair")};

TEST(BulkRating, NeedsLittleMemory)
{
    const auto names = prepared(std::vector<PreparedEntry>(5000, itemEntry("Office chair", std::string(300, 'k'))));
    std::vector<std::uint8_t> priorities(names.size());
    for (const char32_t* const search :
         {U"chair", U"office chair -red", U"(a|b) (c|d) (e|f) (g|h) (i|j) (k|l) (m|n)"}) {
        const LibraryResultCategorizer categorizer(searchFor(search));
        const std::size_t before = allocatedBytes;
        categorizer.categorize(names, 0, priorities);
        EXPECT_LT(allocatedBytes - before, 1U << 20);
    }
}

#ifndef _WIN32  // where each module has its own operator new
TEST(BulkRating, ThrowsWhenMemoryRunsOutAndGoesOnAfterwards)
{
    const auto names = prepared(someEntries);
    std::vector<std::uint8_t> priorities(names.size());
    std::size_t failures = 0;
    for (bool failed = true; failed; ++failures) {
        const LibraryResultCategorizer categorizer(searchFor(U"chair -red"));
        failingAllocation = failures;
        try {
            categorizer.categorize(names, 0, priorities);
            failed = false;
        } catch (const std::bad_alloc&) {
        }
        failingAllocation = SIZE_MAX;
        categorizer.categorize(names, 0, priorities);
        EXPECT_EQ(priorities,
                  (std::vector<std::uint8_t>{ItemContainsWord, Invalid, FolderBeginsWithSequence, Invalid}));
    }
    EXPECT_GT(failures, 5U);
}

// Each allocation fails once; what was added before stays, and what failed leaves no trace.
TEST(PreparedNames, AddAllOfAnEntryOrNothing)
{
    std::size_t failures = 0;
    for (std::size_t failing = 0;; ++failing) {
        Library::Search::PreparedNames names;
        const Library::Search::PreparedNames more = prepared(someEntries);
        failingAllocation = failing;
        const auto tryTwice = [&](const auto& change) {
            try {
                change();
            } catch (const std::bad_alloc&) {
                ++failures;
                change();
            }
        };
        for (int i = 0; i < 4; ++i) {
            for (const PreparedEntry& entry : someEntries)
                tryTwice([&] { add(names, entry); });
            tryTwice([&] { names.append(more); });
            tryTwice([&] { names.close(); });
        }
        const bool isDone = failingAllocation != SIZE_MAX;
        failingAllocation = SIZE_MAX;
        ASSERT_EQ(names.size(), 8 * someEntries.size());
        const auto ratings = ratingsInBulk(LibraryResultCategorizer(searchFor(U"chair")), names, 0, names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(ratings[i], ratingByName(LibraryResultCategorizer(searchFor(U"chair")), someEntries[i % 4]));
            EXPECT_EQ(names.lowerName(i), StringUtils::toLowerUtf8(someEntries[i % 4].name));
        }
        if (isDone)
            break;
    }
    EXPECT_GT(failures, 10U);
}
#endif

constexpr unsigned smallStack = 512 << 10;
constexpr std::size_t huge = 16 << 20;

TEST(Categorizer, HugeTextsNeedNoStack)
{
    onSmallStack(smallStack, [] {
        const std::string text = std::string(huge, 'A') + " chair";
        const LibraryResultCategorizer chair(searchFor(U"chair -red"));
        EXPECT_EQ(chair.categorizeItemResult(text, text), ItemContainsWord);
        EXPECT_EQ(chair.categorizeFolderResult(text + "\n"), Invalid);
    });
}

TEST(Categorizer, HugeTermsNeedNoStackAndLinearTime)
{
    onSmallStack(smallStack, [] {
        const std::u32string term = std::u32string(huge / 2, U'a') + U"b" + std::u32string(huge / 2 - 1, U'a');
        const LibraryResultCategorizer huger(searchFor({group({term}, {term + U"x"})}));
        EXPECT_EQ(huger.categorizeItemResult(std::string(huge, 'a')), Invalid);
        const std::string repeated = std::string(huge / 2 - 1, 'a') + "b";
        EXPECT_EQ(huger.categorizeItemResult(repeated + repeated), Invalid);
        EXPECT_EQ(huger.categorizeItemResult(repeated, "a" + repeated + repeated + "b"), KeywordsContainSequence);
    });
}

TEST(Categorizer, ComparesInLinearTime)
{
    // Every place of these texts begins like the term, and the probes do not help: each rating would take hours
    // if it compared at every place.
    std::u32string term;
    std::string text;
    while (term.size() < (1 << 20))
        term += U"ab";
    term += U"aab";
    while (text.size() < (8 << 20))
        text += "ab";
    const LibraryResultCategorizer pairs(searchFor({group({term + term})}));
    EXPECT_EQ(pairs.categorizeItemResult(text), Invalid);
    const LibraryResultCategorizer same(searchFor({group({std::u32string(1 << 20, U'a')})}));
    EXPECT_EQ(same.categorizeItemResult(std::string(8 << 20, 'a')), ItemBeginsWithSequence);
    EXPECT_EQ(same.categorizeItemResult("b" + std::string(8 << 20, 'a')), ItemContainsSequence);
}

/// Takes every letter except "a" for a blank, and turns the other classes upside down, too.
class ContraryCharacters : public std::ctype<char>
{
public:
    ContraryCharacters() : std::ctype<char>(masks()) {}

private:
    static const mask* masks()
    {
        static mask table[table_size];
        for (std::size_t i = 0; i < table_size; ++i)
            table[i] = i == 'a' || i >= 0x80 ? alpha | lower : space;
        return table;
    }
    char do_tolower(char character) const override { return static_cast<char>(character + 1); }
    const char* do_tolower(char* begin, const char* end) const override
    {
        for (; begin != end; ++begin)
            *begin = do_tolower(*begin);
        return end;
    }
};

class WithLocale : public testing::Test
{
protected:
    void TearDown() override
    {
        std::locale::global(previous_);
        std::setlocale(LC_ALL, "C");
    }

    static void expectClassicResults()
    {
        EXPECT_EQ(item(searchFor(U"caf"), "café"), ItemBeginsWithWord);
        EXPECT_EQ(item(searchFor(U"CAFÉ"), "Big Café"), ItemWordBeginsWithSequence);
        EXPECT_EQ(item(searchFor(U"chair"), "Office Chair"), ItemContainsWord);
        EXPECT_EQ(item(searchFor(U"chair"), "Armchair"), ItemContainsSequence);
        EXPECT_EQ(item(searchFor(U"i"), "I"), ItemExactName);
        EXPECT_EQ(item(wordsFor({"a"}), "b a_ \xE9"), Invalid);
    }

private:
    std::locale previous_;
};

TEST_F(WithLocale, AnyCharacterClassesGiveTheSameResults)
{
    std::locale::global(std::locale(std::locale::classic(), new ContraryCharacters));
    expectClassicResults();
}

TEST_F(WithLocale, TheSystemsLocalesGiveTheSameResults)
{
    // Systems have different locales, but the results must be the same.
    for (const char* const name : {"de_DE.ISO-8859-1", "de_DE.iso88591", "tr_TR.UTF-8", "tr_TR.utf8", "C.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) != nullptr)
            std::locale::global(std::locale(name));
        SCOPED_TRACE(name);
        expectClassicResults();
    }
}

}  // namespace
