#include "CategorizerCalls.h"

#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

using namespace test;
using namespace std::string_literals;

namespace {

static_assert(std::is_convertible_v<const Library::Search::Info&, LibraryResultCategorizer>);

TEST(Categorizer, RatesKeywordsWhereTheNameSaysNothing)
{
    EXPECT_EQ(item(searchFor(U"chair"), "Stool", "seating, chair"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor(U"chair"), "Stool", "seating, armchairs"), KeywordsContainSequence);
    EXPECT_EQ(item(searchFor(U"chair"), "Stool", ""), Invalid);
    EXPECT_EQ(item(searchFor(U"chair"), "", "chair"), KeywordsContainWord);
}

TEST(Categorizer, TakesTheBetterOfNameAndKeywords)
{
    EXPECT_EQ(item(searchFor(U"chair"), "Armchair", "chair"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor(U"chair"), "Armchair", "chairs"), ItemContainsSequence);
    EXPECT_EQ(item(searchFor(U"chair"), "My chairs", "chair"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor(U"chair"), "Chairs", "chair"), ItemBeginsWithSequence);
    EXPECT_EQ(item(searchFor(U"chair"), "chair", "chair"), ItemExactName);
    EXPECT_EQ(item(searchFor({group({U"desk", U"oak"})}), "Desk", "oak"), ItemBeginsWithWord);
}

TEST(Categorizer, FindsNothingAcrossNameAndKeywords)
{
    EXPECT_EQ(item(searchFor({group({U"ab"})}), "a", "b"), Invalid);
    EXPECT_EQ(item(searchFor({group({U"a b"})}), "a", "b"), Invalid);
    EXPECT_EQ(item(searchFor({group({U"b"})}), "a", "b"), KeywordsContainWord) << "the end of the name is not a letter";
}

TEST(Categorizer, ABreakHidesOneTextOnly)
{
    EXPECT_EQ(item(searchFor(U"chair"), "chair\n", "chair"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor(U"chair"), "a chair", "\rchair"), ItemContainsWord);
    EXPECT_EQ(item(searchFor({group({U"a\nb"})}), "a\nb c", "\n"), ItemBeginsWithWord);
    EXPECT_EQ(item(searchFor({group({U"a\nb"})}), "\n", "a\nb c"), KeywordsContainWord);
}

TEST(Categorizer, RequiresEveryTermOfAGroup)
{
    const Info info = searchFor({group({U"office", U"chair"})});
    EXPECT_EQ(item(info, "Office Chair"), ItemExactName);
    EXPECT_EQ(item(info, "office  chair"), ItemBeginsWithWord) << "two blanks";
    EXPECT_EQ(item(info, "chair of an office"), ItemBeginsWithWord);
    EXPECT_EQ(item(info, "Office Table"), Invalid);
    EXPECT_EQ(item(info, "Armchair"), Invalid);
    EXPECT_EQ(item(info, "My office armchair"), ItemContainsWord) << "the best term counts";
    EXPECT_EQ(item(searchFor({group({U"chair", U"chair"})}), "a chair"), ItemContainsWord);
    EXPECT_EQ(item(searchFor({group({U"chair", U"chair"})}), "chair chair"), ItemExactName);
}

TEST(Categorizer, ExactNeedsNoTermToMatch)
{
    EXPECT_EQ(item(searchFor({group({U"a\nb", U"c"})}), "A\nB C"), ItemExactName);
    EXPECT_EQ(item(searchFor({group({U"a\nb", U"c"})}), "A\nB  C"), Invalid);
}

TEST(Categorizer, ExactIsForNamesOnly)
{
    EXPECT_EQ(item(searchFor({group({U"big", U"chair"})}), "x", "big chair"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor({group({})}), "x", ""), Invalid);
}

TEST(Categorizer, TakesTheBestGroup)
{
    const Info info = searchFor({group({U"stool"}), group({U"chair"}), group({U"red", U"chair"})});
    EXPECT_EQ(item(info, "my chair"), ItemContainsWord);
    EXPECT_EQ(item(info, "barstool chairs"), ItemWordBeginsWithSequence);
    EXPECT_EQ(item(info, "Red Chair"), ItemExactName);
    EXPECT_EQ(item(info, "table"), Invalid);
}

TEST(Categorizer, ExclusionOutranksEverything)
{
    EXPECT_EQ(item(searchFor(U"chair -arm"), "Armchair"), Invalid);
    EXPECT_EQ(item(searchFor(U"chair -red"), "Chair"), ItemExactName);
    EXPECT_EQ(item(searchFor(U"chair -red"), "chair", "red"), Invalid);
    EXPECT_EQ(item(searchFor(U"chair -red"), "chair", "coloured"), Invalid) << "anywhere";
    EXPECT_EQ(item(searchFor(U"chair -chair"), "chair"), Invalid);
    EXPECT_EQ(folder(searchFor(U"chair -RED"), "Red chair"), Invalid);
    EXPECT_EQ(item(searchFor(U"chair -red -blue"), "chair", "blue"), Invalid);
}

TEST(Categorizer, ExclusionConcernsItsGroupOnly)
{
    const Info info = searchFor({group({U"chair"}, {U"red"}), group({U"armchair"})});
    EXPECT_EQ(item(info, "red armchair"), ItemContainsWord);
    EXPECT_EQ(item(info, "red chair"), Invalid);
}

TEST(Categorizer, ABreakHidesExclusionsToo)
{
    EXPECT_EQ(item(searchFor(U"chair -red"), "chair", "a\nred"), ItemExactName);
    EXPECT_EQ(item(searchFor({group({U"chair"}, {U"a\nred"})}), "chair", "a\nred"), Invalid);
}

TEST(Categorizer, AnEmptyExclusionExcludesEveryTextWithoutABreak)
{
    const Info info = searchFor({group({U"a\nb"}, {U""})});
    EXPECT_EQ(item(info, "a\nb"), ItemExactName);
    EXPECT_EQ(item(info, "a\nb", "\n"), ItemExactName);
    EXPECT_EQ(item(info, "a\nb", ""), Invalid);
    EXPECT_EQ(item(info, "ab"), Invalid);
}

TEST(Categorizer, ExcludesByWholeWordSearchesAnywhereToo)
{
    Info info = searchFor({group({U"chair"}, {U"red"})});
    info.legacySearch = true;
    EXPECT_EQ(item(info, "a chair", "coloured"), Invalid);
    EXPECT_EQ(item(info, "a chair", "blue"), ItemContainsWord);
}

TEST(Categorizer, PlainWordsMatchAsWholeWords)
{
    EXPECT_EQ(item(wordsFor({"chair"}), "Chairs"), Invalid);
    EXPECT_EQ(item(wordsFor({"chair"}), "Chair"), ItemExactName);
    EXPECT_EQ(item(wordsFor({"chair"}), "Chair x"), ItemBeginsWithWord);
    EXPECT_EQ(item(wordsFor({"chair"}), "A chair"), ItemContainsWord);
    EXPECT_EQ(item(wordsFor({"chair"}), "chairs and chair"), ItemContainsWord);
    EXPECT_EQ(item(wordsFor({"chair"}), "x", "armchair"), Invalid);
    EXPECT_EQ(item(wordsFor({"chair"}), "x", "armchair chair"), KeywordsContainWord);
    EXPECT_EQ(folder(wordsFor({"chair"}), "Chairs"), Invalid);
    EXPECT_EQ(folder(wordsFor({"chair"}), "My chair"), FolderContainsWord);
}

TEST(Categorizer, AnEmptyWordMatchesAtBorders)
{
    EXPECT_EQ(item(wordsFor({""}), "a"), ItemBeginsWithWord);
    EXPECT_EQ(item(wordsFor({""}), "-a"), ItemContainsWord);
    EXPECT_EQ(item(wordsFor({""}), "a-"), ItemBeginsWithWord);
    EXPECT_EQ(item(wordsFor({""}), "-"), Invalid);
    EXPECT_EQ(item(wordsFor({""}), ""), ItemExactName);
    EXPECT_EQ(item(wordsFor({""}), "a\n"), Invalid);
    EXPECT_EQ(item(wordsFor({""}), "-", "-"), Invalid);
    EXPECT_EQ(item(wordsFor({""}), "-", "-a"), KeywordsContainWord);
    EXPECT_EQ(item(wordsFor({"", ""}), " "), ItemExactName);
}

TEST(Categorizer, AnEmptyTermMatchesAnywhereWithoutABreak)
{
    EXPECT_EQ(item(searchFor({group({U""})}), "-"), ItemBeginsWithSequence);
    EXPECT_EQ(item(searchFor({group({U""})}), "\n", ""), KeywordsContainSequence);
    EXPECT_EQ(item(searchFor({group({U""})}), "\n", "a"), KeywordsContainWord);
    EXPECT_EQ(item(searchFor({group({U""})}), "\n"), Invalid);
}

TEST(Categorizer, AGroupWithoutTermsMatchesTheEmptyNameOnly)
{
    EXPECT_EQ(item(wordsFor({}), ""), ItemExactName);
    EXPECT_EQ(folder(wordsFor({}), ""), FolderExactName);
    EXPECT_EQ(item(wordsFor({}), "a"), Invalid);
    EXPECT_EQ(item(wordsFor({}), "", "a"), ItemExactName);
}

TEST(Categorizer, NothingToSearchForMatchesNothing)
{
    const LibraryResultCategorizer nothing(searchFor(U""));
    EXPECT_EQ(nothing.categorizeItemResult("chair"), Invalid);
    EXPECT_EQ(nothing.categorizeItemResult("", ""), Invalid);
    EXPECT_EQ(nothing.categorizeFolderResult(""), Invalid);
}

TEST(Categorizer, KeepsTheTextFlag)
{
    Info info = searchFor(U"chair");
    EXPECT_TRUE(LibraryResultCategorizer(info).isTextSearch());
    info.setupUniqueIdSearch("id");
    EXPECT_FALSE(LibraryResultCategorizer(info).isTextSearch());
    EXPECT_TRUE(LibraryResultCategorizer(wordsFor({"a"})).isTextSearch());
}

TEST(Categorizer, DoesNotNeedItsSearchAnyMore)
{
    Info info = searchFor(U"chair");
    LibraryResultCategorizer first(info);
    info = searchFor(U"table");
    const LibraryResultCategorizer copy = first;
    first = LibraryResultCategorizer(info);
    EXPECT_EQ(copy.categorizeItemResult("chair"), ItemExactName);
    EXPECT_EQ(first.categorizeItemResult("chair"), Invalid);
}

TEST(Categorizer, RatesTextsOfAnySizeAlike)
{
    // Sizes around the blocks and the memory that is kept ready; the term at the end, then cut.
    const LibraryResultCategorizer chair(searchFor(U"chair"));
    for (std::size_t size = 0; size < 3000; size += size < 100 ? 1 : 37) {
        const std::string text(size, 'x');
        ASSERT_EQ(chair.categorizeItemResult(text + " Chair"), ItemContainsWord) << size;
        ASSERT_EQ(chair.categorizeItemResult(text + " Chair", text), ItemContainsWord) << size;
        ASSERT_EQ(chair.categorizeItemResult(text, text + " Chair"), KeywordsContainWord) << size;
        ASSERT_EQ(chair.categorizeItemResult(text + " Chai", text + " Chai"), Invalid) << size;
        ASSERT_EQ(chair.categorizeItemResult(text + "Chair\n", "r" + text), Invalid) << size;
        ASSERT_EQ(chair.categorizeFolderResult("Éx" + text + "chairs"), FolderContainsSequence) << size;
    }
}

TEST(Categorizer, FindsWhatBecomesItsTermInKeywordsOfAnySize)
{
    const LibraryResultCategorizer kitchen(searchFor(U"kitchen"));
    const LibraryResultCategorizer zero(searchFor({group({U"@0 b_"})}));
    for (std::size_t size = 0; size < 100; ++size) {
        const std::string before(size, '.');
        for (const std::string& behind : {""s, "."s, std::string(20, '.')}) {
            ASSERT_EQ(kitchen.categorizeItemResult("", before + "KITCHEN" + behind), KeywordsContainWord) << size;
            ASSERT_EQ(kitchen.categorizeItemResult("", before + "\u212A\u0130TcheN" + behind), KeywordsContainWord)
                << size;
            ASSERT_EQ(kitchen.categorizeItemResult("", before + "kitche." + behind), Invalid) << size;
            ASSERT_EQ(zero.categorizeItemResult("", before + "@0 B_" + behind), KeywordsContainSequence) << size;
            ASSERT_EQ(zero.categorizeItemResult("", before + "`\x10\0\x42\x7F"s + behind), Invalid) << size;
        }
    }
}

TEST(Categorizer, OnlyTwoOthersBecomeAscii)
{
    // This is why other letters may be looked for before a text is lowered.
    std::u32string characters(0x110000, U'\0');
    std::iota(characters.begin(), characters.end(), U'\0');
    const std::u32string lower = StringUtils::toLower(characters);
    ASSERT_EQ(lower.size(), characters.size());
    std::u32string others;
    std::copy_if(characters.begin() + 0x80, characters.end(), std::back_inserter(others),
                 [&](char32_t character) { return lower[character] < 0x80; });
    EXPECT_EQ(others, U"\u0130\u212A");
}

TEST(Categorizer, FindsTermsThatStandInManyGroups)
{
    // (a0|b0) (a1|b1) ... as the normal form of ten alternatives joined by AND.
    std::u32string text;
    for (const char32_t digit : std::u32string(U"0123456789"))
        text += std::u32string(U"(a") + digit + U"|b" + digit + U") ";
    const LibraryResultCategorizer many(searchFor(text));
    EXPECT_EQ(many.categorizeItemResult("x a0 b1 a2 b3 a4 b5 a6 b7 a8 b9"), ItemContainsWord);
    EXPECT_EQ(many.categorizeItemResult("b0 b1 b2 b3 b4 b5 b6 b7 b8 b9"), ItemExactName);
    EXPECT_EQ(many.categorizeItemResult("x b0 b1 b2 b3 b4 b5 b6 b7 b8"), Invalid);
}

TEST(Categorizer, FindsThousandsOfTerms)
{
    std::vector<ORGroup> groups;
    for (int i = 0; i < 3000; ++i) {
        const std::string number = std::to_string(i);
        groups.push_back(group({U"item-" + std::u32string(number.begin(), number.end()) + U"-end"}));
    }
    const LibraryResultCategorizer many(searchFor(std::move(groups)));
    EXPECT_EQ(many.categorizeItemResult("ITEM-2999-END"), ItemExactName);
    EXPECT_EQ(many.categorizeItemResult("my item-1234-end", "item-7-end"), ItemContainsWord);
    EXPECT_EQ(many.categorizeItemResult("item-3000-end"), Invalid);
}

}  // namespace
