#pragma once

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/SearchPriority.h>

#include <locale>
#include <optional>
#include <regex>
#include <string>
#include <vector>

/// The definition of a rating, word for word and however slow: patterns for the standard library's engine,
/// states of groups, slots. For short texts only, because the engine recurses.
namespace test {

inline std::string lowered(const std::u32string& term)
{
    return StringConvert::toStdUtf8String(StringUtils::toLower(term));
}

/// A term as a pattern that matches it alone.
inline std::string escaped(const std::string& term)
{
    std::string result;
    for (const char byte : term) {
        if (byte == '\0') {
            result += "\\x00";  // libstdc++ refuses the byte itself
            continue;
        }
        if (std::string_view(".^$|()[]{}*+?\\").find(byte) != std::string_view::npos)
            result += '\\';
        result += byte;
    }
    return result;
}

/// Patterns matched by the standard library.
class RegexMatch
{
public:
    explicit RegexMatch(const std::string& pattern)
    {
        regex_.imbue(std::locale::classic());
        regex_.assign(pattern, std::regex::ECMAScript);
    }
    bool operator()(const std::string& text) const { return std::regex_match(text, regex_); }

private:
    std::regex regex_;
};

struct RegexPatterns
{
    static RegexMatch beginsWithWord(const std::string& term) { return RegexMatch(escaped(term) + "\\b.*"); }
    static RegexMatch containsWord(const std::string& term) { return RegexMatch(".*\\b" + escaped(term) + "\\b.*"); }
    static RegexMatch beginsWithSequence(const std::string& term) { return RegexMatch(escaped(term) + ".*"); }
    static RegexMatch wordBeginsWithSequence(const std::string& term)
    {
        return RegexMatch(".*\\b" + escaped(term) + ".*");
    }
    static RegexMatch containsSequence(const std::string& term) { return RegexMatch(".*" + escaped(term) + ".*"); }
    static RegexMatch containsAny(const std::vector<std::string>& terms)
    {
        std::string alternatives;
        for (const std::string& term : terms)
            alternatives += (&term == &terms.front() ? "" : "|") + escaped(term);
        return RegexMatch(".*(?:" + alternatives + ").*");
    }
};

/// The same patterns, matched by trying every place.
class PlainMatch
{
public:
    PlainMatch(std::vector<std::string> terms, bool atBegin, bool leftBorder, bool rightBorder)
        : terms_(std::move(terms)), atBegin_(atBegin), leftBorder_(leftBorder), rightBorder_(rightBorder)
    {}

    bool operator()(const std::string& text) const
    {
        for (const std::string& term : terms_) {
            for (std::size_t at = 0; at + term.size() <= text.size() && (at == 0 || !atBegin_); ++at) {
                if (standsAt(text, at, term))
                    return true;
            }
        }
        return false;
    }

private:
    bool standsAt(const std::string& text, std::size_t at, const std::string& term) const
    {
        const std::size_t end = at + term.size();
        return text.compare(at, term.size(), term) == 0 && (!leftBorder_ || border(text, at)) &&
               (!rightBorder_ || border(text, end)) && text.find_first_of("\r\n") >= at &&
               text.find_first_of("\r\n", end) == std::string::npos;
    }

    static bool border(const std::string& text, std::size_t at)
    {
        return (at > 0 && isWord(text[at - 1])) != (at < text.size() && isWord(text[at]));
    }

    static bool isWord(char byte)
    {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
               byte == '_';
    }

    std::vector<std::string> terms_;
    bool atBegin_;
    bool leftBorder_;
    bool rightBorder_;
};

struct PlainPatterns
{
    static PlainMatch beginsWithWord(const std::string& term) { return {{term}, true, false, true}; }
    static PlainMatch containsWord(const std::string& term) { return {{term}, false, true, true}; }
    static PlainMatch beginsWithSequence(const std::string& term) { return {{term}, true, false, false}; }
    static PlainMatch wordBeginsWithSequence(const std::string& term) { return {{term}, false, true, false}; }
    static PlainMatch containsSequence(const std::string& term) { return {{term}, false, false, false}; }
    static PlainMatch containsAny(const std::vector<std::string>& terms) { return {terms, false, false, false}; }
};

struct OracleSlots
{
    SearchPriority exact, beginsWithWord, containsWord, beginsWithSequence, wordBeginsWithSequence, containsSequence;
};

constexpr OracleSlots oracleFolderSlots = {
    FolderExactName,          FolderBeginsWithWord,         FolderContainsWord,
    FolderBeginsWithSequence, FolderWordBeginsWithSequence, FolderContainsSequence};
constexpr OracleSlots oracleItemSlots = {ItemExactName,          ItemBeginsWithWord,         ItemContainsWord,
                                         ItemBeginsWithSequence, ItemWordBeginsWithSequence, ItemContainsSequence};
constexpr OracleSlots oracleKeywordSlots = {Invalid, Invalid, KeywordsContainWord,
                                            Invalid, Invalid, KeywordsContainSequence};

/// A rating by `Patterns`. `Cache` makes the match of a text from the function that makes a pattern, and the
/// terms.
template <typename Patterns>
class RatingOracle
{
public:
    explicit RatingOracle(const Library::Search::Info& info) : wordMatchesOnly_(info.legacySearch)
    {
        for (const Library::Search::ORGroup& group : info.parseTree.groups)
            groups_.emplace_back(group);
    }

    SearchPriority folder(const std::string& name) const { return rate({{name, oracleFolderSlots}}); }
    SearchPriority item(const std::string& name) const { return rate({{name, oracleItemSlots}}); }
    SearchPriority item(const std::string& name, const std::string& keywords) const
    {
        return rate({{name, oracleItemSlots}, {keywords, oracleKeywordSlots}});
    }

private:
    using Match = decltype(Patterns::containsWord(""));

    struct Term
    {
        explicit Term(const std::string& term)
            : beginsWithWord(Patterns::beginsWithWord(term)),
              containsWord(Patterns::containsWord(term)),
              beginsWithSequence(Patterns::beginsWithSequence(term)),
              wordBeginsWithSequence(Patterns::wordBeginsWithSequence(term)),
              containsSequence(Patterns::containsSequence(term))
        {}

        SearchPriority find(const std::string& text, const OracleSlots& slots, bool wordMatchesOnly) const
        {
            if (slots.beginsWithWord != Invalid && beginsWithWord(text))
                return slots.beginsWithWord;
            if (slots.containsWord != Invalid && containsWord(text))
                return slots.containsWord;
            if (wordMatchesOnly)
                return Invalid;
            if (slots.beginsWithSequence != Invalid && beginsWithSequence(text))
                return slots.beginsWithSequence;
            if (slots.wordBeginsWithSequence != Invalid && wordBeginsWithSequence(text))
                return slots.wordBeginsWithSequence;
            if (slots.containsSequence != Invalid && containsSequence(text))
                return slots.containsSequence;
            return Invalid;
        }

        Match beginsWithWord, containsWord, beginsWithSequence, wordBeginsWithSequence, containsSequence;
    };

    struct Group
    {
        explicit Group(const Library::Search::ORGroup& group)
        {
            std::u32string joined;
            for (std::size_t i = 0; i < group.terms.size(); ++i)
                joined += (i == 0 ? U"" : U" ") + group.terms[i];
            exactText = lowered(joined);
            for (const std::u32string& term : group.terms)
                terms.emplace_back(lowered(term));
            std::vector<std::string> excluded;
            for (const std::u32string& term : group.excludedTerms)
                excluded.push_back(lowered(term));
            if (!excluded.empty())
                exclusion.emplace(Patterns::containsAny(excluded));
        }

        std::string exactText;
        std::vector<Term> terms;
        std::optional<Match> exclusion;
    };

    struct State
    {
        std::vector<SearchPriority> termPriorities;
        SearchPriority exactPriority = Invalid;
        bool excluded = false;
    };

    struct Text
    {
        std::string text;
        OracleSlots slots;
    };

    // "The better of two, where zero means none", spelled out here so that the oracle stands alone.
    static SearchPriority better(SearchPriority a, SearchPriority b)
    {
        if (a == Invalid)
            return b;
        if (b == Invalid)
            return a;
        return a < b ? a : b;
    }

    SearchPriority rate(const std::vector<Text>& texts) const
    {
        std::vector<State> states(groups_.size());
        for (std::size_t i = 0; i < groups_.size(); ++i)
            states[i].termPriorities.resize(groups_[i].terms.size(), Invalid);
        for (const Text& text : texts) {
            const std::string lower = StringUtils::toLowerUtf8(text.text);
            for (std::size_t i = 0; i < groups_.size(); ++i)
                testGroup(lower, groups_[i], text.slots, states[i]);
        }
        SearchPriority result = Invalid;
        for (const State& state : states)
            result = better(result, valueOf(state));
        return result;
    }

    void testGroup(const std::string& text, const Group& group, const OracleSlots& slots, State& state) const
    {
        if (state.excluded)
            return;
        if (group.exclusion && (*group.exclusion)(text)) {
            state.excluded = true;
            return;
        }
        if (slots.exact != Invalid && text == group.exactText) {
            state.exactPriority = slots.exact;
            return;
        }
        for (std::size_t j = 0; j < group.terms.size(); ++j) {
            const SearchPriority found = group.terms[j].find(text, slots, wordMatchesOnly_);
            state.termPriorities[j] = better(state.termPriorities[j], found);
        }
    }

    static SearchPriority valueOf(const State& state)
    {
        if (state.excluded)
            return Invalid;
        if (state.exactPriority != Invalid)
            return state.exactPriority;
        SearchPriority value = Invalid;
        for (const SearchPriority priority : state.termPriorities) {
            if (priority == Invalid)
                return Invalid;
            value = better(value, priority);
        }
        return value;
    }

    std::vector<Group> groups_;
    bool wordMatchesOnly_;
};

using RegexOracle = RatingOracle<RegexPatterns>;
using PlainOracle = RatingOracle<PlainPatterns>;

}  // namespace test
