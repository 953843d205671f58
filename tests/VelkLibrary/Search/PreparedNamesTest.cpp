#include <VelkLibrary/Search/PreparedNames.h>

#include "CategorizerCalls.h"
#include "PreparedEntries.h"

#include <VelkCommon/Text/LowerCase.h>

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

using namespace test;
using Library::Search::PreparedNames;
using testing::ElementsAre;

namespace {

std::vector<SearchPriority> rated(const char32_t* search, const PreparedNames& names)
{
    return ratingsInBulk(LibraryResultCategorizer(searchFor(search)), names, 0, names.size());
}

TEST(PreparedNames, AreEmptyAtFirst)
{
    PreparedNames names;
    EXPECT_EQ(names.size(), 0U);
    EXPECT_EQ(names.lowerName(0), "");
    names.close();
    EXPECT_EQ(names.size(), 0U);
    EXPECT_THAT(ratingsInBulk(LibraryResultCategorizer(searchFor(U"a")), names, 0, 2), ElementsAre(Invalid, Invalid));
}

TEST(PreparedNames, CountFromCloseOn)
{
    PreparedNames names;
    names.addItem("Chair");
    EXPECT_EQ(names.size(), 0U);
    EXPECT_EQ(names.lowerName(0), "");
    names.close();
    EXPECT_EQ(names.size(), 1U);
    names.addItem("Chair");
    EXPECT_EQ(names.size(), 1U);
    EXPECT_THAT(ratingsInBulk(LibraryResultCategorizer(searchFor(U"chair")), names, 0, 2),
                ElementsAre(ItemExactName, Invalid));
    names.close();
    EXPECT_THAT(rated(U"chair", names), ElementsAre(ItemExactName, ItemExactName));
}

TEST(PreparedNames, GrowAfterClose)
{
    PreparedNames names;
    for (int round = 0; round < 50; ++round) {
        names.addFolder("Folder " + std::to_string(round));
        names.addItem("Item " + std::to_string(round), std::string(static_cast<std::size_t>(round) * 7, 'k') + " word");
        names.close();
    }
    const std::vector<SearchPriority> ratings = rated(U"word -kkk", names);
    ASSERT_EQ(ratings.size(), 100U);
    EXPECT_EQ(ratings[1], KeywordsContainWord);
    EXPECT_EQ(ratings[99], Invalid);
    EXPECT_EQ(rated(U"word", names)[99], KeywordsContainWord);
    EXPECT_EQ(rated(U"\"folder 49\"", names)[98], FolderExactName);
    EXPECT_EQ(names.lowerName(98), "folder 49");
}

TEST(PreparedNames, GiveNamesInLowerCase)
{
    const std::vector<std::string> given = {
        "Office Chair",           "Büro ÉTÉ",       "\u0130\u212A",        "", "Two\nLines", "one\rTWO",
        std::string("a\0B\0", 4), "\xFF\xC3 X\xFF", std::string(3000, 'A')};
    PreparedNames names;
    for (const std::string& name : given)
        names.addItem(name, "KEYWORDS\nON LINES");
    names.close();
    for (std::size_t i = 0; i < given.size(); ++i)
        EXPECT_EQ(names.lowerName(i), StringUtils::toLowerUtf8(given[i])) << i;
    EXPECT_EQ(names.lowerName(given.size()), "");
}

TEST(PreparedNames, AppendAddsWhatCounts)
{
    PreparedNames some = prepared({itemEntry("chair"), folderEntry("Oak\nTable"), itemEntry("Lamp", "oak\nchair")});
    PreparedNames more = prepared({folderEntry("Chairs"), itemEntry("two\nlines", "chair")});
    more.addItem("chair that does not count yet");
    some.append(more);
    EXPECT_EQ(some.size(), 3U);
    some.close();
    EXPECT_THAT(rated(U"chair", some),
                ElementsAre(ItemExactName, Invalid, Invalid, FolderBeginsWithSequence, KeywordsContainWord));
    EXPECT_EQ(some.lowerName(1), "oak\ntable");
    EXPECT_EQ(some.lowerName(3), "chairs");
    EXPECT_EQ(some.lowerName(4), "two\nlines");
    some.append(PreparedNames());
    some.close();
    EXPECT_EQ(some.size(), 5U);
}

TEST(PreparedNames, AppendToThemselves)
{
    PreparedNames names = prepared({itemEntry("chair"), itemEntry("a\nb", "chair"), folderEntry("")});
    names.append(names);
    names.append(names);
    names.close();
    EXPECT_THAT(rated(U"chair", names),
                ElementsAre(ItemExactName, KeywordsContainWord, Invalid, ItemExactName, KeywordsContainWord, Invalid,
                            ItemExactName, KeywordsContainWord, Invalid));
    EXPECT_EQ(names.lowerName(7), "a\nb");
}

TEST(PreparedNames, ReserveIsOnlyAHint)
{
    PreparedNames names;
    names.reserve(1, 3);
    for (int i = 0; i < 100; ++i)
        names.addItem("chair", "seat");
    names.reserve(100000, 10000000);
    const std::size_t reserved = names.memory();
    EXPECT_GT(reserved, 10000000U);
    names.close();
    EXPECT_LT(names.memory(), reserved / 10) << "what was not needed is given back";
    EXPECT_THAT(rated(U"seat", names), testing::Each(KeywordsContainWord));
}

TEST(PreparedNames, Move)
{
    PreparedNames names = prepared({itemEntry("chair")});
    PreparedNames others = std::move(names);
    EXPECT_EQ(others.size(), 1U);
    names = std::move(others);
    EXPECT_THAT(rated(U"chair", names), ElementsAre(ItemExactName));
}

TEST(PreparedNames, TakeLittleMoreMemoryThanTheirTexts)
{
    PreparedNames names;
    const std::string name(24, 'n');
    const std::string keywords(72, 'k');
    names.reserve(10000, 10000 * (name.size() + keywords.size()));
    for (int i = 0; i < 10000; ++i)
        names.addItem(name, keywords);
    names.close();
    EXPECT_LT(names.memory(), 10000U * (96 + 16 + 14 + 8) + 4096);
}

}  // namespace
