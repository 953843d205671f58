#include "support/CountedMemory.h"

#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Search/ParseTree.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <locale>
#include <new>
#include <numeric>
#include <string>
#include <vector>

#ifdef _WIN32
#include <thread>
#else
#include <pthread.h>
#endif

using Library::Search::Info;
using Library::Search::ORGroup;
using test::allocatedBytes;
using test::allocations;

using namespace std::string_literals;

namespace {

Info searchFor(std::vector<ORGroup> groups)
{
    Info info(std::set<libType>{});
    info.parseTree.groups = std::move(groups);
    return info;
}

Info searchFor(const std::u32string& text)
{
    Info info(std::set<libType>{});
    info.parseTree = Library::Search::parseSearchTerms(text);
    return info;
}

Info wordsFor(const std::vector<std::string>& words)
{
    Info info(std::set<libType>{});
    info.setupLegacySearch(words, {});
    return info;
}

ORGroup group(std::vector<std::u32string> terms, std::vector<std::u32string> excluded = {})
{
    ORGroup result;
    result.terms = std::move(terms);
    result.excludedTerms = std::move(excluded);
    return result;
}

SearchPriority item(const Info& info, const std::string& name)
{
    return LibraryResultCategorizer(info).categorizeItemResult(name);
}

SearchPriority item(const Info& info, const std::string& name, const std::string& keywords)
{
    return LibraryResultCategorizer(info).categorizeItemResult(name, keywords);
}

SearchPriority folder(const Info& info, const std::string& name)
{
    return LibraryResultCategorizer(info).categorizeFolderResult(name);
}

/// One term against one name, by the three calls that can see it.
struct TermCase
{
    const char* name;
    std::u32string term;
    std::string text;
    SearchPriority asItem;
    SearchPriority asFolder;
    SearchPriority asKeywords;  // of an item without a name
};

void PrintTo(const TermCase& row, std::ostream* os)
{
    *os << row.name << ": '" << row.text << "'";
}

const TermCase termCases[] = {
    // The kinds of match
    {"Exact", U"chair", "chair", ItemExactName, FolderExactName, KeywordsContainWord},
    {"ExactInAnotherCase", U"cHAIR", "Chair", ItemExactName, FolderExactName, KeywordsContainWord},
    {"BeginsWithWord", U"office", "Office Chair", ItemBeginsWithWord, FolderBeginsWithWord, KeywordsContainWord},
    {"ContainsWord", U"chair", "Office Chair Black", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"EndsWithWord", U"chair", "Office Chair", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"BeginsWithSequence", U"chair", "Chairs", ItemBeginsWithSequence, FolderBeginsWithSequence,
     KeywordsContainSequence},
    {"WordBeginsWithSequence", U"chair", "Office Chairs", ItemWordBeginsWithSequence, FolderWordBeginsWithSequence,
     KeywordsContainSequence},
    {"ContainsSequence", U"chair", "Armchair", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},
    {"Nothing", U"chair", "Table", Invalid, Invalid, Invalid},
    {"EmptyText", U"chair", "", Invalid, Invalid, Invalid},
    {"LongerThanText", U"chairs", "chair", Invalid, Invalid, Invalid},
    {"OneLetter", U"a", "b a", ItemContainsWord, FolderContainsWord, KeywordsContainWord},

    // Of several occurrences the best counts
    {"LaterWholeWord", U"chair", "armchairs, chairs and chair", ItemContainsWord, FolderContainsWord,
     KeywordsContainWord},
    {"LaterWordBegin", U"chair", "armchair chairs", ItemWordBeginsWithSequence, FolderWordBeginsWithSequence,
     KeywordsContainSequence},
    {"BeginOutranksLaterWordBegin", U"chair", "chairs chairs", ItemBeginsWithSequence, FolderBeginsWithSequence,
     KeywordsContainSequence},
    {"WordOutranksSequenceAtBegin", U"chair", "chairs chair", ItemContainsWord, FolderContainsWord,
     KeywordsContainWord},
    {"Overlapping", U"a a", "ba a a", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"OverlappingPunctuation", U"--", "a---b", ItemWordBeginsWithSequence, FolderWordBeginsWithSequence,
     KeywordsContainSequence},
    {"FarBehind", U"oak", std::string(300, '.') + "oaks " + std::string(300, 'x') + " oak", ItemContainsWord,
     FolderContainsWord, KeywordsContainWord},

    // A term is a literal
    {"Plus", U"a+b", "a+b", ItemExactName, FolderExactName, KeywordsContainWord},
    {"PlusIsNoRepetition", U"a+b", "aab", Invalid, Invalid, Invalid},
    {"Parentheses", U"(x)", "a (x) b", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},
    {"Dot", U"a.b", "axb", Invalid, Invalid, Invalid},
    {"AllSpecialCharacters", U".^$|()[]{}*+?\\", "is .^$|()[]{}*+?\\ !", ItemContainsSequence, FolderContainsSequence,
     KeywordsContainSequence},
    {"Hyphen", U"r-value", "my R-value", ItemContainsWord, FolderContainsWord, KeywordsContainWord},

    // Borders: ASCII letters, digits and "_" are word characters
    {"EndsInPunctuationBeforeBlank", U"c++", "C++ book", ItemBeginsWithSequence, FolderBeginsWithSequence,
     KeywordsContainSequence},
    {"EndsInPunctuationBeforeDigit", U"c++", "C++11", ItemBeginsWithWord, FolderBeginsWithWord, KeywordsContainWord},
    {"Underscore", U"chair", "my_chair", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},
    {"Digit", U"chair", "2chair", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},
    {"NonAsciiLetterIsNone", U"caf", "café", ItemBeginsWithWord, FolderBeginsWithWord, KeywordsContainWord},
    {"EndsInNonAsciiBeforeBlank", U"café", "café table", ItemBeginsWithSequence, FolderBeginsWithSequence,
     KeywordsContainSequence},
    {"EndsInNonAsciiBeforeLetter", U"café", "caféx", ItemBeginsWithWord, FolderBeginsWithWord, KeywordsContainWord},
    {"EndsInNonAsciiAtEnd", U"café", "big café", ItemWordBeginsWithSequence, FolderWordBeginsWithSequence,
     KeywordsContainSequence},
    {"NonAsciiAtBothEnds", U"été", "bel été", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},
    {"BeginsWithNonAsciiBehindBlank", U"élan", "bel élan brun", ItemContainsSequence, FolderContainsSequence,
     KeywordsContainSequence},
    {"BeginsWithNonAsciiAtBegin", U"élan", "élan brun", ItemBeginsWithWord, FolderBeginsWithWord,
     KeywordsContainSequence},
    {"Comma", U"Sofa,", "Sofa, 3-seat", ItemBeginsWithSequence, FolderBeginsWithSequence, KeywordsContainSequence},
    {"InchBeforeBlank", U"24\"", "24\" cabinet", ItemBeginsWithSequence, FolderBeginsWithSequence,
     KeywordsContainSequence},
    {"InchBeforeLetter", U"24\"", "24\"x", ItemBeginsWithWord, FolderBeginsWithWord, KeywordsContainWord},

    // Lower case of either side
    {"Cyrillic", U"СТОЛ", "стол дубовый", ItemBeginsWithSequence, FolderBeginsWithSequence, KeywordsContainSequence},
    {"NonAsciiInAnotherCase", U"CAFÉ", "Café", ItemExactName, FolderExactName, KeywordsContainSequence},
    {"FinalSigmaIsASigma", U"ΟΔΟΣ", "οδοσ", ItemExactName, FolderExactName, KeywordsContainSequence},
    {"CapitalIWithDot", U"istanbul", "İstanbul", ItemExactName, FolderExactName, KeywordsContainWord},
    {"KelvinSign", U"k", "\u212A", ItemExactName, FolderExactName, KeywordsContainWord},
    {"Emoji", U"\U0001FA91", "a \U0001FA91", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},

    // Line breaks hide everything beside them
    {"BreakBefore", U"chair", "seating\nchair", Invalid, Invalid, Invalid},
    {"BreakBehind", U"chair", "chair\n", Invalid, Invalid, Invalid},
    {"CarriageReturn", U"chair", "a\rchair", Invalid, Invalid, Invalid},
    {"BreakFarBehind", U"chair", "chair " + std::string(100, '.') + "\n", Invalid, Invalid, Invalid},
    {"BreakInTerm", U"a\nb", "x a\nb y", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"BreaksInTerm", U"\r\n", "a\r\nb", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"BreakInTermAndBeside", U"a\nb", "a\nb\n", Invalid, Invalid, Invalid},
    {"BreakInTermAndBefore", U"a\nb", "\na\nb", Invalid, Invalid, Invalid},
    {"BreakInTermOnly", U"a\nb", "a b", Invalid, Invalid, Invalid},
    {"TermIsABreak", U"\n", "\n", ItemExactName, FolderExactName, KeywordsContainSequence},
    {"OneOfTwoBreaks", U"\n", "\n\n", Invalid, Invalid, Invalid},
    {"ExactIgnoresBreaks", U"a\n\nb", "A\n\nB", ItemExactName, FolderExactName, KeywordsContainWord},

    // Other separators are ordinary characters
    {"VerticalTab", U"chair", "a\vchair", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"FormFeed", U"chair", "a\fchair", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"ZeroByte", U"chair", "a\0chair"s, ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"ZeroInTerm", U"a\0b"s, "x a\0b"s, ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"NextLine", U"chair", "a\u0085chair", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"LineSeparator", U"chair", "a\u2028chair", ItemContainsWord, FolderContainsWord, KeywordsContainWord},

    // Text that is no UTF-8
    {"MalformedBeside", U"chair", "\xFF\xC3 chair\xFF", ItemContainsWord, FolderContainsWord, KeywordsContainWord},
    {"MalformedTermIsReplaced", std::u32string(1, char32_t{0xD800}), "\uFFFD", ItemExactName, FolderExactName,
     KeywordsContainSequence},
    {"TermFF", std::u32string(1, char32_t{0xFF}), "\xFF", Invalid, Invalid, Invalid},
};

class RatesTerm : public testing::TestWithParam<TermCase>
{};

TEST_P(RatesTerm, AsItem)
{
    EXPECT_EQ(item(searchFor({group({GetParam().term})}), GetParam().text), GetParam().asItem);
}

TEST_P(RatesTerm, AsFolder)
{
    EXPECT_EQ(folder(searchFor({group({GetParam().term})}), GetParam().text), GetParam().asFolder);
}

TEST_P(RatesTerm, AsKeywords)
{
    EXPECT_EQ(item(searchFor({group({GetParam().term})}), "", GetParam().text), GetParam().asKeywords);
}

TEST_P(RatesTerm, ByWholeWordsOnly)
{
    Info info = searchFor({group({GetParam().term})});
    info.legacySearch = true;
    const SearchPriority all = GetParam().asItem;
    EXPECT_EQ(item(info, GetParam().text), all <= ItemContainsWord ? all : Invalid);
    const SearchPriority keywords = GetParam().asKeywords;
    EXPECT_EQ(item(info, "", GetParam().text), keywords == KeywordsContainWord ? keywords : Invalid);
}

TEST_P(RatesTerm, AsExclusionWhereItOccurs)
{
    const Info excluding = searchFor({group({U""}, {GetParam().term})});
    const bool broken = GetParam().text.find_first_of("\r\n") != std::string::npos;
    if (GetParam().asKeywords != Invalid) {
        EXPECT_EQ(item(excluding, GetParam().text), Invalid);
    } else if (!broken) {
        EXPECT_NE(item(excluding, GetParam().text), Invalid);
    }
}

INSTANTIATE_TEST_SUITE_P(Categorizer, RatesTerm, testing::ValuesIn(termCases),
                         [](const auto& row) { return std::string(row.param.name); });

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
    EXPECT_EQ(item(searchFor({group({U"b"})}), "a", "b"), KeywordsContainWord) << "the name's end is no letter";
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
    // What makes it sound to look for other letters before a text is in lower case.
    std::u32string characters(0x110000, U'\0');
    std::iota(characters.begin(), characters.end(), U'\0');
    const std::u32string lower = StringUtils::toLower(characters);
    ASSERT_EQ(lower.size(), characters.size());
    std::u32string others;
    std::copy_if(characters.begin() + 0x80, characters.end(), std::back_inserter(others),
                 [&](char32_t character) { return lower[character] < 0x80; });
    EXPECT_EQ(others, U"\u0130\u212A");
}

TEST(Categorizer, KnowsOneTermInManyGroups)
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

TEST(Categorizer, KnowsThousandsOfTerms)
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
#ifndef _WIN32  // where each module has an operator new of its own
    EXPECT_GT(allocatedBytes - before, 0U);
#endif
    EXPECT_LT(allocatedBytes - before, 2048U) << "with everything that was needed to build it";
    EXPECT_EQ(some.categorizeItemResult("office chair"), ItemExactName);
}

/// Runs `work` in a thread with a stack of 512 KiB, where the system lets one choose.
void runOnSmallStack(const std::function<void()>& work)
{
#ifdef _WIN32
    std::thread(work).join();
#else
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
    pthread_t thread{};
    const auto entry = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, entry, const_cast<std::function<void()>*>(&work)), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
#endif
}

constexpr std::size_t huge = 16 << 20;

TEST(Categorizer, HugeTextsNeedNoStack)
{
    runOnSmallStack([] {
        const std::string text = std::string(huge, 'A') + " chair";
        const LibraryResultCategorizer chair(searchFor(U"chair -red"));
        EXPECT_EQ(chair.categorizeItemResult(text, text), ItemContainsWord);
        EXPECT_EQ(chair.categorizeFolderResult(text + "\n"), Invalid);
    });
}

TEST(Categorizer, HugeTermsNeedNoStackAndLinearTime)
{
    runOnSmallStack([] {
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
    // Every place of these begins like the term, and the probes are no help: by comparison at every
    // place each would take hours.
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

/// Sees every letter but "a" as a blank, and has the rest upside down.
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
    // Which of them a system has differs; the results must not.
    for (const char* const name : {"de_DE.ISO-8859-1", "de_DE.iso88591", "tr_TR.UTF-8", "tr_TR.utf8", "C.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) != nullptr)
            std::locale::global(std::locale(name));
        SCOPED_TRACE(name);
        expectClassicResults();
    }
}

}  // namespace
