#include <VelkLibrary/Search/ParseTree.h>

#include "VelkLibrary/Search/ParseTreeText.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;
using test::describe;

struct SearchCase
{
    const char* name;
    const char32_t* text;  // what the user typed
    const char* groups;    // describe() of the tree; "" = nothing to search for
};

void PrintTo(const SearchCase& row, std::ostream* out)
{
    *out << StringConvert::toStdUtf8String(row.text);
}

const SearchCase searchCases[] = {
    // Names as they are typed
    {"Word", U"chair", "<chair>"},
    {"TwoWords", U"office chair", "<office> <chair>"},
    {"BlanksCollapse", U"Office  Chair", "<Office> <Chair>"},
    {"CommaStaysInWord", U"Sofa, 3-seat", "<Sofa,> <3-seat>"},
    {"InchMarkEndsWord", U"24\" cabinet", "<24\"> <cabinet>"},
    {"InchMarksInName", U"24\" x 36\" vanity", "<24\"> <x> <36\"> <vanity>"},
    {"FeetAndInches", U"6'8\" door", "<6'8\"> <door>"},
    {"SlashInWord", U"A/C unit", "<A/C> <unit>"},
    {"AmpersandInWord", U"T&G oak", "<T&G> <oak>"},
    {"HyphenInWord", U"R-value", "<R-value>"},
    {"LoneAmpersand", U"Fridge & Freezer", "<Fridge> <&> <Freezer>"},
    {"LoneSlash", U"Réfrigérateur / Congélateur", "<Réfrigérateur> </> <Congélateur>"},
    {"LoneHyphenBetweenWords", U"Sofa - oak", "<Sofa> <-> <oak>"},
    {"ParenthesesInsideWord", U"Cabinet(2)", "<Cabinet(2)>"},
    {"Backslashes", U"C:\\lib\\oak", "<C:\\lib\\oak>"},
    {"Asterisk", U"chair*", "<chair*>"},
    {"PlusSign", U"+Size bed", "<+Size> <bed>"},
    {"NumberSign", U"#12 screw", "<#12> <screw>"},
    // Operators
    {"AndJoins", U"chair AND wood", "<chair> <wood>"},
    {"LowerCaseAndIsAWord", U"chair and wood", "<chair> <and> <wood>"},
    {"LowerCaseAndInName", U"Black and white tiles", "<Black> <and> <white> <tiles>"},
    {"OrSeparates", U"chair OR table", "<chair> ; <table>"},
    {"LowerCaseOrIsAWord", U"chair or table", "<chair> <or> <table>"},
    {"BarInsideWords", U"chair|table", "<chair> ; <table>"},
    {"BarBetweenBlanks", U"chair | table", "<chair> ; <table>"},
    {"NotExcludes", U"chair NOT red", "<chair> -<red>"},
    {"AndNotExcludes", U"chair AND NOT red", "<chair> -<red>"},
    {"HyphenExcludes", U"chair -red", "<chair> -<red>"},
    {"HyphenExcludesPhrase", U"chair -\"dark red\"", "<chair> -<dark red>"},
    {"HyphenExcludesEveryAlternative", U"chair -(red OR blue)", "<chair> -<red> -<blue>"},
    {"NotOfBothIsEither", U"chair NOT (red blue)", "<chair> -<red> ; <chair> -<blue>"},
    // Exclusion alone, precedence and groups
    {"OnlyNot", U"NOT red", ""},
    {"OnlyHyphen", U"-red", ""},
    {"DoubleNotCancels", U"NOT NOT red", "<red>"},
    {"NegatedAlternativeDrops", U"a OR NOT b", "<a>"},
    {"ExclusionStaysInItsGroup", U"(a AND NOT b) OR c", "<a> -<b> ; <c>"},
    {"TwoRuns", U"chair wood OR table oak", "<chair> <wood> ; <table> <oak>"},
    {"AndBindsTighter", U"chair OR table AND wood", "<chair> ; <table> <wood>"},
    {"GroupWithAnd", U"(chair OR table) AND wood", "<chair> <wood> ; <table> <wood>"},
    {"TwoGroupsMultiply", U"(chair|table) (oak|pine)",
     "<chair> <oak> ; <chair> <pine> ; <table> <oak> ; <table> <pine>"},
    {"NestedGroups", U"a AND (b AND (c OR d))", "<a> <b> <c> ; <a> <b> <d>"},
    {"GroupWithExclusion", U"(office chair) -arm", "<office> <chair> -<arm>"},
    // Phrases
    {"Phrase", U"\"office chair\"", "<office chair>"},
    {"QuotedAnd", U"\"AND\" gate", "<AND> <gate>"},
    {"QuotedNot", U"\"NOT\" gate", "<NOT> <gate>"},
    {"QuotedHyphens", U"\"R-value\" -\"-40\"", "<R-value> -<-40>"},
    {"DoubledQuote", U"\"24\"\" cabinet\"", "<24\" cabinet>"},
    {"TypographicQuotes", U"“office chair”", "<office chair>"},
    {"EmptyPhrase", U"\"\"", ""},
    {"EmptyPhraseAtEnd", U"chair \"\"", "<chair>"},
    {"DoubledQuoteInPhrase", U"\"a\"\"b\"", "<a\"b>"},
    // Operators without an operand before them, and in a row
    {"LeadingAnd", U"AND gate", "<AND> <gate>"},
    {"LeadingOr", U"OR gate", "<OR> <gate>"},
    {"LeadingNot", U"NOT gate", ""},
    {"OnlyAnd", U"AND", "<AND>"},
    {"OnlyOr", U"OR", "<OR>"},
    {"AndAnd", U"chair AND AND gate", "<chair> <gate>"},
    {"LastOperatorIsOr", U"chair AND OR table", "<chair> ; <table>"},
    {"LastOperatorIsAnd", U"chair OR AND table", "<chair> <table>"},
    {"AndBehindNotIsATerm", U"lamp NOT AND gate", "<lamp> <gate> -<AND>"},
    // Operators without an operand behind them
    {"TrailingAnd", U"chair AND", "<chair>"},
    {"TrailingOr", U"chair OR", "<chair>"},
    {"TrailingBar", U"chair |", "<chair>"},
    {"TrailingNot", U"chair NOT", "<chair>"},
    {"TrailingHyphen", U"chair -", "<chair>"},
    {"HyphenAlone", U"-", ""},
    {"NotAlone", U"NOT", ""},
    {"BarAlone", U"|", ""},
    // Parentheses that do not pair
    {"UnclosedGroup", U"(chair", "<chair>"},
    {"UnclosedGroupWithOr", U"(chair OR", "<chair>"},
    {"TrailingEmptyOpenGroup", U"(chair OR table) AND (", "<chair> ; <table>"},
    {"TwoOpenParentheses", U"((", ""},
    {"EmptyGroup", U"()", ""},
    {"EmptyGroupAtEnd", U"chair ()", "<chair>"},
    {"UnopenedParenthesis", U"chair)", "<chair>"},
    {"UnopenedParenthesisThenOr", U"chair) OR table", "<chair> ; <table>"},
    // Quotes that do not pair
    {"UnclosedPhrase", U"\"office ch", "<office ch>"},
    {"UnclosedPhraseTrailingBlanks", U"\"office ", "<office>"},
    {"QuoteAlone", U"\"", ""},
    {"QuoteAtEnd", U"office \"", "<office>"},
    {"QuoteInTheMiddle", U"36 \" vanity", "<36> <\"> <vanity>"},
    // More of the same
    {"LeadingBar", U"| chair", "<chair>"},
    {"LeadingOrInGroup", U"(OR table)", "<OR> <table>"},
    {"TrailingAndNot", U"chair AND NOT", "<chair>"},
    // Other scripts
    {"AccentedExclusion", U"café -thé", "<café> -<thé>"},
    {"CyrillicOr", U"стол OR стул", "<стол> ; <стул>"},
    {"IdeographicSpace", U"椅子\u3000木", "<椅子> <木>"},
    {"CyrillicAndNot", U"стол AND NOT красный", "<стол> -<красный>"},
    {"TurkishDottedI", U"İstanbul koltuk", "<İstanbul> <koltuk>"},
    {"NoBreakSpace", U"chair\u00A0oak", "<chair> <oak>"},
    {"QuotesInName", U"Картина \"Море\"", "<Картина> <Море>"},
    {"SymbolsBeyondTheBmp", U"🪑 OR 🛋", "<🪑> ; <🛋>"},
    // Odds and ends
    {"NoText", U"", ""},
    {"OnlyBlanks", U"   ", ""},
    {"HyphenBetweenBlanksDoesNotExclude", U"chair - red", "<chair> <-> <red>"},
    {"GroupThenOpenParenthesis", U"(chair) (", "<chair>"},
    {"TwoBars", U"a | | b", "<a> ; <b>"},
    {"HyphenEndsWord", U"a- b", "<a-> <b>"},
    {"ParenthesesAcrossWords", U"x(y z)", "<x(y> <z>"},
    {"HyphenThenQuote", U"-\"", ""},
    {"NotOfEmptyGroup", U"NOT () b", "<b>"},
    {"TrailingNotAnd", U"lamp NOT AND", "<lamp> -<AND>"},
    {"HyphenatedWordExcludes", U"Lamp -40W", "<Lamp> -<40W>"},
    {"QuotedHyphenatedWord", U"Lamp \"-40W\"", "<Lamp> <-40W>"},
    {"QuotedBar", U"\"a|b\"", "<a|b>"},
    {"NoBreakSpaceInPhrase", U"\"a\u00A0b\"", "<a\u00A0b>"},
    {"NotOfLoneQuote", U"a -\" b", "<a> <b> -<\">"},
    {"NotOfGroupWithLoneMark", U"a NOT ( - ) b", "<a> <b>"},
    {"NotOfLoneHyphenBeforeBar", U"a --| b", "<a> -<-> ; <b>"},
    // A search that is typed letter by letter
    {"TypingA", U"chair A", "<chair> <A>"},
    {"TypingAn", U"chair AN", "<chair> <AN>"},
    {"TypingAndWord", U"chair AND w", "<chair> <w>"},
};

class ParseSearchTerms : public testing::TestWithParam<SearchCase>
{};

TEST_P(ParseSearchTerms, GivesGroups)
{
    EXPECT_EQ(describe(parseSearchTerms(GetParam().text)), GetParam().groups);
}

TEST_P(ParseSearchTerms, IgnoresBlanksAround)
{
    const std::u32string text = GetParam().text;
    const ParseTree tree = parseSearchTerms(text);
    for (const std::u32string& blanks : {std::u32string(U" "), std::u32string(U"\t\u00A0\n"), std::u32string(3, 0)}) {
        EXPECT_EQ(parseSearchTerms(blanks + text), tree);
        EXPECT_EQ(parseSearchTerms(text + blanks), tree);
    }
}

INSTANTIATE_TEST_SUITE_P(Grammar, ParseSearchTerms, testing::ValuesIn(searchCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
