#include "CategorizerCalls.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

using namespace test;
using namespace std::string_literals;

namespace {

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

    // Term and text are both lowered
    {"Cyrillic", U"СТОЛ", "стол дубовый", ItemBeginsWithSequence, FolderBeginsWithSequence, KeywordsContainSequence},
    {"NonAsciiInAnotherCase", U"CAFÉ", "Café", ItemExactName, FolderExactName, KeywordsContainSequence},
    {"FinalSigmaIsASigma", U"ΟΔΟΣ", "οδοσ", ItemExactName, FolderExactName, KeywordsContainSequence},
    {"CapitalIWithDot", U"istanbul", "İstanbul", ItemExactName, FolderExactName, KeywordsContainWord},
    {"KelvinSign", U"k", "\u212A", ItemExactName, FolderExactName, KeywordsContainWord},
    {"Emoji", U"\U0001FA91", "a \U0001FA91", ItemContainsSequence, FolderContainsSequence, KeywordsContainSequence},

    // A term must cover all line breaks
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

    // Text that is not UTF-8
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

std::vector<char32_t> charactersWithOtherLowerCase()
{
    std::vector<char32_t> result;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (StringUtils::toLower(std::u32string(1, character)).front() != character)
            result.push_back(character);
    }
    return result;
}

TEST(Categorizer, FindsEveryCharacterThatHasALowerCaseByThatLowerCase)
{
    const std::vector<char32_t> characters = charactersWithOtherLowerCase();
    ASSERT_GT(characters.size(), 1000u);
    const std::u32string filling(40, U'.');
    for (const char32_t character : characters) {
        for (const std::u32string& text : {std::u32string{character}, U"b" + std::u32string{character},
                                           character + std::u32string(U"b"), U"\u043F" + std::u32string{character}}) {
            const LibraryResultCategorizer categorizer(searchFor({group({StringUtils::toLower(text)})}));
            const std::string name = StringConvert::toStdUtf8String(text);
            const std::string keywords = StringConvert::toStdUtf8String(filling + text + filling);
            EXPECT_EQ(categorizer.categorizeItemResult(name), ItemExactName) << name;
            EXPECT_NE(categorizer.categorizeItemResult("x" + name), Invalid) << name;
            EXPECT_NE(categorizer.categorizeItemResult("x", keywords), Invalid) << name;
        }
    }
}

}  // namespace
