#include "CategorizerCalls.h"
#include "PreparedEntries.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using namespace test;
using testing::ElementsAre;

namespace {

std::vector<SearchPriority> rated(const Info& info, const std::vector<PreparedEntry>& entries)
{
    return ratingsInBulk(LibraryResultCategorizer(info), entries);
}

TEST(BulkRating, EachKindOfMatchOfAnItem)
{
    EXPECT_THAT(
        rated(searchFor(U"chair"),
              {itemEntry("Chair"), itemEntry("Chair, red"), itemEntry("Red chair"), itemEntry("Chairs"),
               itemEntry("Seat", "red chair"), itemEntry("Red chairs"), itemEntry("Armchair"),
               itemEntry("Seat", "armchairs"), itemEntry("Seat", "table"), itemEntry("Seat")}),
        ElementsAre(ItemExactName, ItemBeginsWithWord, ItemContainsWord, ItemBeginsWithSequence, KeywordsContainWord,
                    ItemWordBeginsWithSequence, ItemContainsSequence, KeywordsContainSequence, Invalid, Invalid));
}

TEST(BulkRating, EachKindOfMatchOfAFolder)
{
    EXPECT_THAT(rated(searchFor(U"chair"),
                      {folderEntry("Chair"), folderEntry("Chair, red"), folderEntry("Red chair"), folderEntry("Chairs"),
                       folderEntry("Red chairs"), folderEntry("Armchair"), folderEntry("Table")}),
                ElementsAre(FolderExactName, FolderBeginsWithWord, FolderContainsWord, FolderBeginsWithSequence,
                            FolderWordBeginsWithSequence, FolderContainsSequence, Invalid));
}

TEST(BulkRating, ASingleLetter)
{
    EXPECT_THAT(rated(searchFor(U"a"), {itemEntry("A"), itemEntry("a b"), itemEntry("B a"), itemEntry("ab"),
                                        itemEntry("B", "a"), itemEntry("b ab"), itemEntry("ba"), itemEntry("b", "ba"),
                                        itemEntry("b", "b"), folderEntry("a"), folderEntry("bab")}),
                ElementsAre(ItemExactName, ItemBeginsWithWord, ItemContainsWord, ItemBeginsWithSequence,
                            KeywordsContainWord, ItemWordBeginsWithSequence, ItemContainsSequence,
                            KeywordsContainSequence, Invalid, FolderExactName, FolderContainsSequence));
}

TEST(BulkRating, AllTermsOfAGroupMustOccur)
{
    EXPECT_THAT(rated(searchFor(U"office chair -red"),
                      {itemEntry("Office chair"), itemEntry("Chair, office"), itemEntry("Chair", "office"),
                       itemEntry("Chair"), itemEntry("Office chair, red"), itemEntry("Office chair", "reddish"),
                       folderEntry("Chairs for the office")}),
                ElementsAre(ItemExactName, ItemBeginsWithWord, ItemBeginsWithWord, Invalid, Invalid, Invalid,
                            FolderContainsWord));
}

TEST(BulkRating, TheBestGroupCounts)
{
    EXPECT_THAT(rated(searchFor(U"chair -red OR table OR wood"),
                      {itemEntry("Red chair"), itemEntry("Red chair", "table"), itemEntry("Woody table"),
                       itemEntry("Table"), itemEntry("Wooden")}),
                ElementsAre(Invalid, KeywordsContainWord, ItemContainsWord, ItemExactName, ItemBeginsWithSequence));
}

TEST(BulkRating, AnExactNameMayBeThatOfAnyGroupThatDoesNotExcludeIt)
{
    const Info info = searchFor({group({U"a", U"b"}, {U"b"}), group({U"a b"}), group({U"c"}, {U"c"})});
    EXPECT_THAT(rated(info, {itemEntry("a b"), itemEntry("c"), itemEntry("a b c")}),
                ElementsAre(ItemExactName, Invalid, ItemBeginsWithWord));
    EXPECT_THAT(rated(searchFor({group({U"a", U"b"}, {U"b"})}), {itemEntry("a b")}), ElementsAre(Invalid));
}

TEST(BulkRating, WordsOnly)
{
    const Info chair = wordsFor({"chair"});
    EXPECT_THAT(
        rated(chair, {itemEntry("Chair"), itemEntry("Chair, red"), itemEntry("Armchair"), itemEntry("Seat", "chair"),
                      itemEntry("Seat", "chairs"), folderEntry("Red chair")}),
        ElementsAre(ItemExactName, ItemBeginsWithWord, Invalid, KeywordsContainWord, Invalid, FolderContainsWord));
}

TEST(BulkRating, WordsOnlyCountAsAnExactNameEvenWhereTheyAreNoWords)
{
    EXPECT_THAT(rated(wordsFor({"café"}), {itemEntry("Café"), itemEntry("big café"), folderEntry("café")}),
                ElementsAre(ItemExactName, Invalid, FolderExactName));
    EXPECT_THAT(rated(wordsFor({"é", "-"}), {itemEntry("é -"), itemEntry("- é")}), ElementsAre(ItemExactName, Invalid));
}

TEST(BulkRating, WordsOnlyAreExcludedAnywhere)
{
    Info info = searchFor({group({U"chair"}, {U"arm"})});
    info.legacySearch = true;
    EXPECT_THAT(rated(info, {itemEntry("Chair"), itemEntry("chair, armless"), itemEntry("Chair", "charms")}),
                ElementsAre(ItemExactName, Invalid, Invalid));
}

// Only a term that covers all line breaks is found in a text that has some, whatever the other text holds.
TEST(BulkRating, LineBreaks)
{
    const std::vector<PreparedEntry> entries = {itemEntry("red\nchair"), itemEntry("chair", "red\nchair"),
                                                itemEntry("a\rb", "chair"), folderEntry("chair\n"), itemEntry("chair")};
    EXPECT_THAT(rated(searchFor(U"chair"), entries),
                ElementsAre(Invalid, ItemExactName, KeywordsContainWord, Invalid, ItemExactName));
    EXPECT_THAT(rated(searchFor({group({U"d\nc"})}), entries),
                ElementsAre(ItemContainsSequence, KeywordsContainSequence, Invalid, Invalid, Invalid));
    EXPECT_THAT(rated(searchFor({group({U"red\nchair"})}), entries),
                ElementsAre(ItemExactName, KeywordsContainWord, Invalid, Invalid, Invalid));
}

TEST(BulkRating, SearchesOfOddForm)
{
    const std::vector<PreparedEntry> entries = {itemEntry("chair"),    itemEntry(""),     itemEntry("", ""),
                                                itemEntry("a\nb", ""), itemEntry("a\nb"), folderEntry("")};
    for (const Info& info : {searchFor({group({U""})}), searchFor({group({U"", U"chair"})}), searchFor({group({})}),
                             searchFor({group({U"chair"}, {U""})}), searchFor({group({}, {U"x"})}), wordsFor({"", ""}),
                             searchFor({group({std::u32string(65, U'x')}), group({U"chair"})})}) {
        const LibraryResultCategorizer categorizer(info);
        const std::vector<SearchPriority> ratings = ratingsInBulk(categorizer, entries);
        for (std::size_t i = 0; i < entries.size(); ++i)
            EXPECT_EQ(ratings[i], ratingByName(categorizer, entries[i])) << i;
    }
}

TEST(BulkRating, NothingMatchesASearchWithoutGroups)
{
    EXPECT_THAT(rated(searchFor(U""), {itemEntry("chair"), itemEntry("")}), ElementsAre(Invalid, Invalid));
    Info byId(std::set<libType>{});
    byId.setupUniqueIdSearch("chair");
    EXPECT_THAT(rated(byId, {itemEntry("chair")}), ElementsAre(Invalid));
}

TEST(BulkRating, EntriesThatDoNotExistAreInvalid)
{
    const LibraryResultCategorizer chair(searchFor(U"chair"));
    const auto names = prepared({itemEntry("table"), itemEntry("chair")});
    EXPECT_THAT(ratingsInBulk(chair, names, 1, 3), ElementsAre(ItemExactName, Invalid, Invalid));
    EXPECT_THAT(ratingsInBulk(chair, names, 2, 1), ElementsAre(Invalid));
    EXPECT_THAT(ratingsInBulk(chair, names, SIZE_MAX, 2), ElementsAre(Invalid, Invalid));
    EXPECT_THAT(ratingsInBulk(chair, names, 1, 0), ElementsAre());
}

// A term does not reach from one text into the next one, wherever cells and blocks begin and end.
TEST(BulkRating, TextsEndWhereTheyEnd)
{
    for (std::size_t size = 0; size < 140; ++size) {
        const std::string filler(size, 'x');
        EXPECT_THAT(rated(searchFor(U"ab"),
                          {itemEntry(filler + "a"), itemEntry("b" + filler, "a"), itemEntry("b", filler + "ab"),
                           folderEntry(filler + "ab"), itemEntry("a", "b" + filler + "-ab")}),
                    ElementsAre(Invalid, Invalid, size == 0 ? KeywordsContainWord : KeywordsContainSequence,
                                size == 0 ? FolderExactName : FolderContainsSequence, KeywordsContainWord))
            << size;
    }
}

TEST(BulkRating, BytesThatAreNotUtf8)
{
    const std::vector<PreparedEntry> entries = {itemEntry("\xFF"
                                                          "chair\xFF"),
                                                itemEntry("\xFF", "\xFF\xFF"), itemEntry(std::string("\0chair", 6)),
                                                itemEntry("c", "chair\xFF")};
    const LibraryResultCategorizer categorizer(searchFor(U"chair|c"));
    const std::vector<SearchPriority> ratings = ratingsInBulk(categorizer, entries);
    for (std::size_t i = 0; i < entries.size(); ++i)
        EXPECT_EQ(ratings[i], ratingByName(categorizer, entries[i])) << i;
}

}  // namespace
