#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Text/StringConvert.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <random>
#include <string_view>

namespace {

using Library::Search::ORGroup;
using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;

/// "<office> <chair> -<arm> ; <table>": the alternatives, each with its terms and excluded terms.
std::string describe(const ParseTree& tree)
{
    std::string text;
    for (const ORGroup& group : tree.groups) {
        text += text.empty() ? "" : " ; ";
        std::string terms;
        for (const std::u32string& term : group.terms)
            terms += " <" + StringConvert::toStdUtf8String(term) + ">";
        for (const std::u32string& term : group.excludedTerms)
            terms += " -<" + StringConvert::toStdUtf8String(term) + ">";
        text += terms.empty() ? "nothing" : terms.substr(1);
    }
    return text;
}

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
    // Text of the world
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

// ---- large and deep texts

std::u32string repeated(std::size_t count, std::u32string_view piece)
{
    std::u32string text;
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

std::u32string numbered(char32_t letter, std::size_t number)
{
    const std::string digits = std::to_string(number);
    return letter + std::u32string(digits.begin(), digits.end());
}

/// "(a1|b1) (a2|b2) ..."
std::u32string pairs(std::size_t count)
{
    std::u32string text;
    for (std::size_t i = 1; i <= count; ++i)
        text += U"(" + numbered(U'a', i) + U"|" + numbered(U'b', i) + U") ";
    return text;
}

std::vector<std::u32string> numberedTerms(char32_t letter, std::size_t count)
{
    std::vector<std::u32string> terms;
    for (std::size_t i = 1; i <= count; ++i)
        terms.push_back(numbered(letter, i));
    return terms;
}

TEST(ParseSearchTermsLimits, SevenPairsGive128Groups)
{
    const ParseTree tree = parseSearchTerms(pairs(7));
    ASSERT_EQ(tree.groups.size(), 128U);
    EXPECT_EQ(tree.groups.front().terms, numberedTerms(U'a', 7));
    EXPECT_EQ(tree.groups.back().terms, numberedTerms(U'b', 7));
    EXPECT_EQ(tree.groups[1].terms[6], U"b7");
}

TEST(ParseSearchTermsLimits, TenPairsGive1024Groups)
{
    const ParseTree tree = parseSearchTerms(pairs(10));
    ASSERT_EQ(tree.groups.size(), 1024U);
    for (const ORGroup& group : tree.groups)
        ASSERT_EQ(group.terms.size(), 10U);
}

TEST(ParseSearchTermsLimits, MorePairsGiveNothing)
{
    EXPECT_EQ(parseSearchTerms(pairs(11)), ParseTree());
    EXPECT_EQ(parseSearchTerms(pairs(30)), ParseTree());
}

TEST(ParseSearchTermsLimits, ALongWordInEveryAlternativeGivesNothing)
{
    const std::u32string factor = U"(" + repeated(72, U"a|") + U"a)";
    EXPECT_EQ(parseSearchTerms(factor + factor + U" x").groups.size(), 73U * 73U);
    EXPECT_EQ(parseSearchTerms(factor + factor + std::u32string(16'000, U'x')), ParseTree());
}

TEST(ParseSearchTermsLimits, NegatedPairsGiveNothing)
{
    std::u32string text = U"NOT (a1 b1";
    for (std::size_t i = 2; i <= 30; ++i)
        text += U" OR " + numbered(U'a', i) + U" " + numbered(U'b', i);
    EXPECT_EQ(parseSearchTerms(text + U")"), ParseTree());
    EXPECT_EQ(parseSearchTerms(U"x OR " + text + U")"), ParseTree());
}

TEST(ParseSearchTermsLimits, NestedParentheses)
{
    for (const std::u32string& closing : {repeated(128, U")"), std::u32string()}) {
        EXPECT_EQ(describe(parseSearchTerms(repeated(128, U"(") + U"x" + closing)), "<x>");
        EXPECT_EQ(parseSearchTerms(repeated(129, U"(") + U"x" + closing + U")"), ParseTree());
    }
}

TEST(ParseSearchTermsLimits, ManyNots)
{
    EXPECT_EQ(describe(parseSearchTerms(repeated(1000, U"NOT ") + U"x")), "<x>");
    EXPECT_EQ(describe(parseSearchTerms(U"y " + repeated(1001, U"NOT ") + U"x")), "<y> -<x>");
    EXPECT_EQ(describe(parseSearchTerms(repeated(16'382, U"-") + U"x")), "<x>");
}

TEST(ParseSearchTermsLimits, LongWord)
{
    const std::u32string longest(16'384, U'x');
    const ParseTree tree = parseSearchTerms(longest);
    ASSERT_EQ(tree.groups.size(), 1U);
    EXPECT_EQ(tree.groups[0].terms, std::vector{longest});
    EXPECT_EQ(parseSearchTerms(longest + U"x"), ParseTree());
}

TEST(ParseSearchTermsLimits, ManyWords)
{
    const ParseTree tree = parseSearchTerms(repeated(8000, U"x "));
    ASSERT_EQ(tree.groups.size(), 1U);
    EXPECT_EQ(tree.groups[0].terms, std::vector<std::u32string>(8000, U"x"));
}

TEST(ParseSearchTermsLimits, ArticleNumbersJoinedByOr)
{
    std::u32string text;
    for (std::size_t i = 1000; i < 2200; ++i)
        text += (text.empty() ? U"" : U" OR ") + numbered(U'A', i);
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 1200U);
    std::replace(text.begin(), text.end(), U'O', U'|');
    text.erase(std::remove(text.begin(), text.end(), U'R'), text.end());
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 1200U);
}

TEST(ParseSearchTermsLimits, TwoThousandArticleNumbers)
{
    std::u32string text;
    for (std::size_t i = 1000; i < 3000; ++i)
        text += (text.empty() ? U"" : U"|") + numbered(U'A', i);
    EXPECT_EQ(parseSearchTerms(text).groups.size(), 2000U);
}

TEST(ParseSearchTermsLimits, OnlyMarks)
{
    const ParseTree quotes = parseSearchTerms(repeated(4000, U"\""));
    ASSERT_EQ(quotes.groups.size(), 1U);
    EXPECT_EQ(quotes.groups[0].terms, std::vector{std::u32string(1999, U'"')});
    EXPECT_EQ(parseSearchTerms(repeated(4000, U"-")), ParseTree());
    EXPECT_EQ(parseSearchTerms(repeated(4000, U")")), ParseTree());
    EXPECT_EQ(parseSearchTerms(repeated(16'384, U"|")), ParseTree());
}

// ---- properties of random texts

class RandomTexts
{
public:
    explicit RandomTexts(std::vector<std::u32string> pieces) : pieces_(std::move(pieces)) {}

    std::u32string next(std::size_t maximum)
    {
        std::u32string text;
        for (std::size_t count = random_() % (maximum + 1); count > 0; --count)
            text += pieces_[random_() % pieces_.size()];
        return text;
    }

private:
    std::vector<std::u32string> pieces_;
    std::mt19937 random_{20'260'102};
};

TEST(ParseSearchTermsProperties, NoTermIsEmptyAndEveryGroupHasOne)
{
    RandomTexts texts({U" ", U" ", U"a", U"b", U"(", U")", U"|", U"-", U"\"", U"\u201C", U"AND ", U" OR ", U"NOT ",
                       U"\u3000", std::u32string(1, 0), std::u32string(1, 0xD800), std::u32string(1, 0xFFFFFFFF)});
    for (int i = 0; i < 20'000; ++i) {
        const std::u32string text = texts.next(24);
        const ParseTree tree = parseSearchTerms(text);
        ASSERT_EQ(parseSearchTerms(text), tree);
        ASSERT_EQ(parseSearchTerms(U" " + text + U"\u2003"), tree) << StringConvert::toStdUtf8String(text);
        for (const ORGroup& group : tree.groups) {
            ASSERT_FALSE(group.terms.empty());
            for (const auto& terms : {group.terms, group.excludedTerms})
                ASSERT_EQ(std::count(terms.begin(), terms.end(), U""), 0);
        }
    }
}

std::vector<std::u32string> wordsOf(const std::u32string& name)
{
    std::vector<std::u32string> words(1);
    for (const char32_t c : name) {
        if (c != U' ')
            words.back().push_back(c);
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty())
        words.pop_back();
    return words;
}

bool hasUnpairedClosing(const std::u32string& word)
{
    int open = 0;
    for (const char32_t c : word) {
        open += c == U'(' ? 1 : c == U')' ? -1 : 0;
        if (open < 0)
            return true;
    }
    return false;
}

/// Whether a name holds nothing that the search text gives a meaning to.
bool isPlainName(const std::vector<std::u32string>& words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::u32string& word = words[i];
        const bool isOperator = word == U"NOT" || (i > 0 && (word == U"AND" || word == U"OR"));
        const bool startsSpecially = word[0] == U'"' || word[0] == U'(' || (word[0] == U'-' && word.size() > 1);
        if (isOperator || startsSpecially || word.find(U'|') != std::u32string::npos || hasUnpairedClosing(word))
            return false;
    }
    return !words.empty() && words.back() != U"-";
}

std::u32string joined(const std::vector<std::u32string>& words)
{
    std::u32string text;
    for (const std::u32string& word : words)
        text += (text.empty() ? U"" : U" ") + word;
    return text;
}

/// Whether some alternative has all of its terms and none of its excluded terms in `name`.
bool matches(const ParseTree& tree, const std::u32string& name)
{
    const auto occurs = [&](const std::u32string& term) { return name.find(term) != std::u32string::npos; };
    return tree.groups.empty() || std::any_of(tree.groups.begin(), tree.groups.end(), [&](const ORGroup& group) {
               return std::all_of(group.terms.begin(), group.terms.end(), occurs) &&
                      std::none_of(group.excludedTerms.begin(), group.excludedTerms.end(), occurs);
           });
}

RandomTexts randomNames()
{
    return RandomTexts({U" ",   U" ",   U" ",   U"Sofa", U", ",  U"24\"", U"-",         U" - ",
                        U"A/C", U"T&G", U"AND", U"OR",   U"NOT", U"and",  U"ORange ",   U"NOTE ",
                        U"(2)", U"x",   U"x(",  U")",    U"\"",  U"|",    U"caf\u00E9", U"6'8\""});
}

TEST(ParseSearchTermsProperties, PlainNamesFindThemselvesExactly)
{
    RandomTexts names = randomNames();
    int plain = 0;
    for (int i = 0; i < 20'000; ++i) {
        const std::u32string name = names.next(8);
        const std::vector<std::u32string> words = wordsOf(name);
        if (!isPlainName(words))
            continue;
        ++plain;
        const ParseTree tree = parseSearchTerms(name);
        ASSERT_EQ(tree.groups.size(), 1U) << StringConvert::toStdUtf8String(name);
        ASSERT_EQ(joined(tree.groups[0].terms), joined(words));
        ASSERT_TRUE(tree.groups[0].excludedTerms.empty());
    }
    EXPECT_GT(plain, 5'000);
}

TEST(ParseSearchTermsProperties, PrefixesOfPlainNamesMatch)
{
    RandomTexts names = randomNames();
    for (int i = 0; i < 5'000; ++i) {
        const std::u32string name = names.next(8);
        if (!isPlainName(wordsOf(name)))
            continue;
        for (std::size_t length = 0; length <= name.size(); ++length)
            ASSERT_TRUE(matches(parseSearchTerms(name.substr(0, length)), name))
                << StringConvert::toStdUtf8String(name) << ", " << length;
    }
}

// ---- the values

TEST(ParseTreeValue, EqualWhenGroupsAreEqualInOrder)
{
    const ParseTree tree = parseSearchTerms(U"a b -c OR d");
    EXPECT_EQ(tree, parseSearchTerms(U"a AND b NOT c | d"));
    EXPECT_NE(tree, parseSearchTerms(U"b a -c OR d"));
    EXPECT_NE(tree, parseSearchTerms(U"d OR a b -c"));
    EXPECT_NE(tree, parseSearchTerms(U"a b -c"));
    EXPECT_NE(tree, parseSearchTerms(U"a b -C OR d"));
    EXPECT_EQ(ParseTree(), ParseTree());
}

TEST(ParseTreeValue, GroupsCompareBothLists)
{
    const ORGroup group{{U"a", U"b"}, {U"c"}};
    EXPECT_EQ(group, (ORGroup{{U"a", U"b"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"b", U"a"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"a", U"b"}, {}}));
    EXPECT_NE(group, (ORGroup{{U"a"}, {U"c"}}));
    EXPECT_NE(group, (ORGroup{{U"a", U"b", U"c"}, {}}));
}

TEST(ParseTreeValue, VisitsTermsThenExcludedTermsGroupByGroup)
{
    ParseTree tree{{ORGroup{{U"a", U"b"}, {U"c"}}, ORGroup{{U"d"}, {U"e"}}}};
    std::u32string visited;
    tree.forEachTerm([&](std::u32string& term) { visited += term; });
    EXPECT_EQ(visited, U"abcde");
}

TEST(ParseTreeValue, VisitorMayRewrite)
{
    ParseTree tree{{ORGroup{{U"a", U"b"}, {U"c"}}}};
    tree.forEachTerm([](std::u32string& term) { term[0] -= U'a' - U'A'; });
    EXPECT_EQ(tree, (ParseTree{{ORGroup{{U"A", U"B"}, {U"C"}}}}));
}

TEST(ParseTreeValue, EmptyVisitorThrowsAtTheFirstTerm)
{
    EXPECT_NO_THROW(ParseTree().forEachTerm(nullptr));
    EXPECT_NO_THROW((ParseTree{{ORGroup{}}}).forEachTerm(nullptr));
    EXPECT_THROW((ParseTree{{ORGroup{{U"a"}, {}}}}).forEachTerm(nullptr), std::bad_function_call);
    EXPECT_THROW((ParseTree{{ORGroup{{}, {U"a"}}}}).forEachTerm(nullptr), std::bad_function_call);
}

TEST(ParseTreeValue, RemovesEmptyTexts)
{
    ORGroup group{{U"", U"a", U"", U"b", U""}, {U"", U"c", U" "}};
    group.removeInvalidTerms();
    EXPECT_EQ(group, (ORGroup{{U"a", U"b"}, {U"c", U" "}}));

    ORGroup onlyEmpty{{U""}, {U"", U""}};
    onlyEmpty.removeInvalidTerms();
    EXPECT_EQ(onlyEmpty, ORGroup());
}

}  // namespace
