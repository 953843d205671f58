#pragma once

/// @file
/// The patterns of the oracle with a memory, for tests in which the same terms and texts meet again and again.

#include "RatingOracle.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace test {

/// Remembers the answers of a match, because the same terms and texts meet again and again here.
template <typename Match>
class Remembered
{
public:
    explicit Remembered(Match match) : match_(std::move(match)) {}

    bool operator()(const std::string& text) const
    {
        const auto [place, isNew] = answers_->try_emplace(text, false);
        if (isNew)
            place->second = match_(text);
        return place->second;
    }

private:
    Match match_;
    std::shared_ptr<std::unordered_map<std::string, bool>> answers_ =
        std::make_shared<std::unordered_map<std::string, bool>>();
};

/// The regular expressions, each compiled once for the life of the test.
struct RememberedPatterns
{
    using Match = Remembered<RegexMatch>;

    template <typename Make>
    static Match remember(const std::string& key, Make make)
    {
        static std::map<std::string, Match> matches;
        const auto place = matches.find(key);
        return place != matches.end() ? place->second : matches.emplace(key, Match(make())).first->second;
    }

    static Match beginsWithWord(const std::string& term)
    {
        return remember("a" + term, [&] { return RegexPatterns::beginsWithWord(term); });
    }
    static Match containsWord(const std::string& term)
    {
        return remember("b" + term, [&] { return RegexPatterns::containsWord(term); });
    }
    static Match beginsWithSequence(const std::string& term)
    {
        return remember("c" + term, [&] { return RegexPatterns::beginsWithSequence(term); });
    }
    static Match wordBeginsWithSequence(const std::string& term)
    {
        return remember("d" + term, [&] { return RegexPatterns::wordBeginsWithSequence(term); });
    }
    static Match containsSequence(const std::string& term)
    {
        return remember("e" + term, [&] { return RegexPatterns::containsSequence(term); });
    }
    static Match containsAny(const std::vector<std::string>& terms)
    {
        std::string key = "f";
        for (const std::string& term : terms)
            key += std::to_string(term.size()) + ":" + term;
        return remember(key, [&] { return RegexPatterns::containsAny(terms); });
    }
};

}  // namespace test
