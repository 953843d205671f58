// Properties that hold for random search texts.
#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Text/StringConvert.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Library::Search::ORGroup;
using Library::Search::parseSearchTerms;
using Library::Search::ParseTree;

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

/// Whether a name holds nothing that has a special meaning in a search text.
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

}  // namespace
