#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Search/detail/LiteralMatcher.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

using Library::Search::ORGroup;
using Library::Search::detail::BytePairs;
using Library::Search::detail::LiteralMatcher;
using Library::Search::detail::LoweredTexts;
using Library::Search::detail::noWorth;
using Library::Search::detail::PlaceWorths;
using Library::Search::detail::PlainPart;
using Library::Search::detail::Worth;

namespace {

/// What each kind of match is worth for one kind of name.
struct PrioritySlots
{
    SearchPriority exact;
    SearchPriority beginsWithWord;
    SearchPriority containsWord;
    SearchPriority beginsWithSequence;
    SearchPriority wordBeginsWithSequence;
    SearchPriority containsSequence;
};

constexpr PrioritySlots folderSlots = {
    FolderExactName,          FolderBeginsWithWord,         FolderContainsWord,
    FolderBeginsWithSequence, FolderWordBeginsWithSequence, FolderContainsSequence,
};
constexpr PrioritySlots itemSlots = {
    ItemExactName,          ItemBeginsWithWord,         ItemContainsWord,
    ItemBeginsWithSequence, ItemWordBeginsWithSequence, ItemContainsSequence,
};

constexpr PlaceWorths placeWorths(const PrioritySlots& slots)
{
    return {
        .begin = {slots.beginsWithSequence, slots.beginsWithWord},
        .name = {{slots.containsSequence, slots.containsSequence}, {slots.wordBeginsWithSequence, slots.containsWord}},
        .keywords = {{KeywordsContainSequence, KeywordsContainSequence},
                     {KeywordsContainSequence, KeywordsContainWord}},
    };
}

constexpr PlaceWorths wholeWordWorths(const PrioritySlots& slots)
{
    return {
        .begin = {noWorth, slots.beginsWithWord},
        .name = {{noWorth, noWorth}, {noWorth, slots.containsWord}},
        .keywords = {{noWorth, noWorth}, {noWorth, KeywordsContainWord}},
    };
}

/// What an exact match and the place of a term are worth for one kind of name.
struct NameWorths
{
    explicit constexpr NameWorths(const PrioritySlots& slots)
        : exact(slots.exact), anyMatch(placeWorths(slots)), wholeWords(wholeWordWorths(slots))
    {}

    Worth exact;
    PlaceWorths anyMatch;
    PlaceWorths wholeWords;
};

constexpr NameWorths folderWorths(folderSlots);
constexpr NameWorths itemWorths(itemSlots);

/// Any place is as good as any other.
constexpr PlaceWorths anywhere = {.begin = {1, 1}, .name = {{1, 1}, {1, 1}}, .keywords = {{1, 1}, {1, 1}}};

/// What a rating knows about a term, which may stand in many groups.
struct TermState
{
    static constexpr Worth unknown = -1;

    Worth worth = unknown;
    Worth anywhere = unknown;
};

/// Memory for one rating: on the stack for texts of usual size; for larger ones the thread's, which is kept;
/// for the largest, memory of its own.
class RatingMemory
{
public:
    explicit RatingMemory(std::size_t size) : data_(size <= sizeof onStack_ ? onStack_ : large(size)) {}
    RatingMemory(const RatingMemory&) = delete;
    RatingMemory& operator=(const RatingMemory&) = delete;

    char* data() const { return data_; }

private:
    static constexpr std::size_t largestKept = 4 << 20;

    char* large(std::size_t size)
    {
        if (size > largestKept) {
            own_ = std::make_unique_for_overwrite<char[]>(size);
            return own_.get();
        }
        thread_local std::unique_ptr<char[]> kept;
        thread_local std::size_t keptSize = 0;
        if (keptSize < size) {
            keptSize = 0;
            kept = std::make_unique_for_overwrite<char[]>(size);
            keptSize = size;
        }
        return kept.get();
    }

    alignas(TermState) char onStack_[2560];
    std::unique_ptr<char[]> own_;
    char* data_;
};

/// A group's range in the list of all groups' terms: the required ones, then the excluded ones.
struct GroupMatcher
{
    std::string exactText;
    std::uint32_t requiredBegin = 0;
    std::uint32_t excludedBegin = 0;
    std::uint32_t end = 0;
};

// With this many terms or more, one look at the texts' pairs of bytes is less work than one look for each term.
constexpr std::size_t fewestTermsForPairs = 8;

}  // namespace

/// The compiled search. Each distinct term is compiled and looked for once, however many groups hold it.
struct LibraryResultCategorizer::Matchers
{
    explicit Matchers(const Library::Search::Info& info);

    SearchPriority rate(const NameWorths& worths, const std::string& name, const std::string* keywords) const;
    bool mayMatch(std::string_view name, std::string_view keywords) const;

    std::vector<LiteralMatcher> terms;
    std::vector<std::uint32_t> groupTerms;  // indexes into `terms`
    std::vector<GroupMatcher> groups;
    bool wordMatchesOnly;
    bool textSearch;
    bool looksAtGivenTexts;  // whether mayMatch() is worth its time

private:
    class Builder;
    class Rating;
};

class LibraryResultCategorizer::Matchers::Builder
{
public:
    Builder(Matchers& matchers, const std::vector<ORGroup>& groups) : matchers_(matchers)
    {
        std::size_t count = 0;
        for (const ORGroup& group : groups)
            count += group.terms.size() + group.excludedTerms.size();
        matchers_.groups.reserve(groups.size());
        matchers_.groupTerms.reserve(count);
        matchers_.terms.reserve(std::min(count, usualTermCount));
        byText_.reserve(std::min(count, usualTermCount));
    }

    void add(const ORGroup& group)
    {
        GroupMatcher& matcher = matchers_.groups.emplace_back();
        matcher.requiredBegin = listSize();
        addTerms(group.terms);
        for (std::uint32_t i = matcher.requiredBegin; i < listSize(); ++i) {
            matcher.exactText += i == matcher.requiredBegin ? "" : " ";
            matcher.exactText += matchers_.terms[matchers_.groupTerms[i]].term();
        }
        arrange(matcher.requiredBegin);
        matcher.excludedBegin = listSize();
        addTerms(group.excludedTerms);
        arrange(matcher.excludedBegin);
        matcher.end = listSize();
    }

private:
    static constexpr std::size_t usualTermCount = 16;

    std::uint32_t listSize() const { return static_cast<std::uint32_t>(matchers_.groupTerms.size()); }

    void addTerms(const std::vector<std::u32string>& texts)
    {
        for (const std::u32string& text : texts)
            matchers_.groupTerms.push_back(indexOf(StringConvert::toStdUtf8String(StringUtils::toLower(text))));
    }

    // Keeps each term once, those that are most likely to be missing first.
    void arrange(std::uint32_t begin)
    {
        std::vector<std::uint32_t>& list = matchers_.groupTerms;
        const auto rank = [this](std::uint32_t term) { return std::pair(matchers_.terms[term].frequency(), term); };
        std::sort(list.begin() + begin, list.end(), [&](auto a, auto b) { return rank(a) < rank(b); });
        list.erase(std::unique(list.begin() + begin, list.end()), list.end());
    }

    std::uint32_t indexOf(std::string term)
    {
        const auto isBefore = [this](std::uint32_t a, const std::string& b) { return matchers_.terms[a].term() < b; };
        const auto place = std::lower_bound(byText_.begin(), byText_.end(), term, isBefore);
        if (place != byText_.end() && matchers_.terms[*place].term() == term)
            return *place;
        const auto index = static_cast<std::uint32_t>(matchers_.terms.size());
        byText_.insert(place, index);
        matchers_.terms.emplace_back(std::move(term));
        return index;
    }

    Matchers& matchers_;
    std::vector<std::uint32_t> byText_;  // indexes of the terms in the order of their texts
};

/// One rating in progress.
class LibraryResultCategorizer::Matchers::Rating
{
public:
    Rating(const Matchers& matchers, const NameWorths& worths, LoweredTexts& texts, TermState* states)
        : matchers_(matchers),
          texts_(texts),
          states_(states),
          exact_(worths.exact),
          worths_(matchers.wordMatchesOnly ? worths.wholeWords : worths.anyMatch)
    {
        if (matchers.terms.size() < fewestTermsForPairs)
            return;
        texts.lowerKeywords();
        if (texts.size() <= BytePairs::largestUseful)
            pairs_.emplace(texts);
    }

    /// The best group's worth.
    Worth best()
    {
        Worth best = noWorth;
        for (const GroupMatcher& group : matchers_.groups) {
            const Worth worth = worthOf(group);
            if (worth < best && !isExcluded(group))
                best = worth;
            if (best == exact_)
                break;
        }
        return best;
    }

private:
    // The excluded terms are left aside here. Every required term must occur; the best one counts.
    Worth worthOf(const GroupMatcher& group)
    {
        if (texts_.nameText() == group.exactText)
            return exact_;
        Worth best = noWorth;
        for (std::size_t i = group.requiredBegin; i < group.excludedBegin; ++i) {
            const std::uint32_t term = matchers_.groupTerms[i];
            Worth& worth = states_[term].worth;
            if (worth == TermState::unknown)
                worth = bestOf(matchers_.terms[term], worths_);
            if (worth == noWorth)
                return noWorth;
            best = std::min(best, worth);
        }
        return best;
    }

    bool isExcluded(const GroupMatcher& group)
    {
        for (std::size_t i = group.excludedBegin; i < group.end; ++i) {
            const std::uint32_t term = matchers_.groupTerms[i];
            Worth& worth = states_[term].anywhere;
            if (worth == TermState::unknown)
                worth = bestOf(matchers_.terms[term], anywhere);
            if (worth != noWorth)
                return true;
        }
        return false;
    }

    Worth bestOf(const LiteralMatcher& term, const PlaceWorths& worths) const
    {
        return pairs_ && !term.mayStandIn(*pairs_) ? noWorth : term.best(texts_, worths);
    }

    const Matchers& matchers_;
    LoweredTexts& texts_;
    std::optional<BytePairs> pairs_;
    TermState* const states_;
    const Worth exact_;
    const PlaceWorths& worths_;
};

LibraryResultCategorizer::Matchers::Matchers(const Library::Search::Info& info)
    : wordMatchesOnly(info.legacySearch), textSearch(info.textSearch)
{
    Builder builder(*this, info.parseTree.groups);
    for (const ORGroup& group : info.parseTree.groups)
        builder.add(group);
    terms.shrink_to_fit();
    groupTerms.shrink_to_fit();
    looksAtGivenTexts = terms.size() < fewestTermsForPairs &&
                        std::all_of(groups.begin(), groups.end(), [this](const GroupMatcher& group) {
                            return group.requiredBegin < group.excludedBegin &&
                                   terms[groupTerms[group.requiredBegin]].plainPart().isSelective();
                        });
}

// Whether some group has all its required terms in the texts, as far as that can be told before the texts are
// lowered. Most texts fail here.
bool LibraryResultCategorizer::Matchers::mayMatch(std::string_view name, std::string_view keywords) const
{
    const auto mayStand = [&](std::uint32_t term) {
        const PlainPart& part = terms[term].plainPart();
        return part.mayStandIn(keywords) || part.mayStandIn(name);
    };
    return std::any_of(groups.begin(), groups.end(), [&](const GroupMatcher& group) {
        return std::all_of(groupTerms.begin() + group.requiredBegin, groupTerms.begin() + group.excludedBegin,
                           mayStand);
    });
}

SearchPriority LibraryResultCategorizer::Matchers::rate(const NameWorths& worths, const std::string& name,
                                                        const std::string* keywords) const
{
    if (groups.empty() || (looksAtGivenTexts && !mayMatch(name, keywords == nullptr ? std::string_view() : *keywords)))
        return Invalid;
    const std::size_t statesSize = terms.size() * sizeof(TermState);
    const std::size_t textsSize = LoweredTexts::room(name.size(), keywords == nullptr ? 0 : keywords->size());
    const RatingMemory memory(statesSize + textsSize);
    auto* const states = reinterpret_cast<TermState*>(memory.data());
    std::uninitialized_fill_n(states, terms.size(), TermState{});
    LoweredTexts texts(memory.data() + statesSize, name, keywords);
    const Worth best = Rating(*this, worths, texts, states).best();
    return best == noWorth ? Invalid : static_cast<SearchPriority>(best);
}

LibraryResultCategorizer::LibraryResultCategorizer(const Library::Search::Info& info)
    : matchers_(std::make_shared<const Matchers>(info))
{}

SearchPriority LibraryResultCategorizer::categorizeFolderResult(const std::string& folderName) const
{
    return matchers_->rate(folderWorths, folderName, nullptr);
}

SearchPriority LibraryResultCategorizer::categorizeItemResult(const std::string& itemName) const
{
    return matchers_->rate(itemWorths, itemName, nullptr);
}

SearchPriority LibraryResultCategorizer::categorizeItemResult(const std::string& itemName,
                                                              const std::string& keywords) const
{
    return matchers_->rate(itemWorths, itemName, &keywords);
}

bool LibraryResultCategorizer::isTextSearch() const noexcept
{
    return matchers_->textSearch;
}
