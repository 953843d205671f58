#include <VelkLibrary/LibraryResultCategorizer.h>

#include <VelkLibrary/Search/PreparedNames.h>
#include <VelkLibrary/Search/detail/BulkRating.h>
#include <VelkLibrary/Search/detail/CompiledSearch.h>
#include <VelkLibrary/Search/detail/LoweredTexts.h>
#include <VelkLibrary/Search/detail/NameBlock.h>
#include <VelkLibrary/Search/detail/NameWorths.h>
#include <VelkLibrary/Search/detail/SearchPlan.h>
#include <VelkLibrary/Search/detail/TermPairs.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

using Library::Search::PreparedNames;
using Library::Search::detail::anywhere;
using Library::Search::detail::BytePairs;
using Library::Search::detail::CompiledSearch;
using Library::Search::detail::folderWorths;
using Library::Search::detail::itemWorths;
using Library::Search::detail::LiteralMatcher;
using Library::Search::detail::LoweredTexts;
using Library::Search::detail::NameBlock;
using Library::Search::detail::NameWorths;
using Library::Search::detail::noWorth;
using Library::Search::detail::PlaceWorths;
using Library::Search::detail::PlainPart;
using Library::Search::detail::SearchPlan;
using Library::Search::detail::TermPairs;
using Library::Search::detail::Worth;

namespace {

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

// With this many terms or more, one look at the texts' pairs of bytes is less work than one look for each term.
constexpr std::size_t fewestTermsForPairs = 8;

}  // namespace

/// The compiled search, and the ways to rate by it.
struct LibraryResultCategorizer::Matchers : CompiledSearch
{
    explicit Matchers(const Library::Search::Info& info);
    Matchers(const Matchers&) = delete;
    Matchers& operator=(const Matchers&) = delete;
    ~Matchers() { delete plan_.load(std::memory_order_acquire); }

    SearchPriority rate(const NameWorths& worths, const std::string& name, const std::string* keywords) const;
    SearchPriority rate(const NameBlock& names, std::size_t entry) const;
    const SearchPlan& plan() const;

    bool textSearch;
    bool looksAtGivenTexts;  // whether mayMatch() is worth its time

private:
    class Rating;

    bool mayMatch(std::string_view name, std::string_view keywords) const;

    std::unique_ptr<const TermPairs> termPairs_;  // null for few terms and for very many

    // Made for the first rating in bulk: most searches see none.
    mutable std::atomic<const SearchPlan*> plan_ = nullptr;
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
        if (texts.size() > BytePairs::largestUseful)
            return;
        if (matchers.termPairs_)
            terms_ = matchers.termPairs_->termsIn(texts);
        else
            pairs_.emplace(texts);
    }

    /// The best group's worth.
    Worth best()
    {
        Worth best = noWorth;
        for (std::size_t i = 0; i < matchers_.groups.size(); ++i) {
            const Group& group = matchers_.groups[i];
            if (matchers_.termPairs_ && (matchers_.termPairs_->required(i) & ~terms_) != 0)
                continue;
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
    Worth worthOf(const Group& group)
    {
        if (texts_.nameText() == group.exactText)
            return exact_;
        Worth best = noWorth;
        for (const std::uint32_t term : matchers_.required(group)) {
            Worth& worth = states_[term].worth;
            if (worth == TermState::unknown)
                worth = bestOf(term, worths_);
            if (worth == noWorth)
                return noWorth;
            best = std::min(best, worth);
        }
        return best;
    }

    bool isExcluded(const Group& group)
    {
        for (const std::uint32_t term : matchers_.excluded(group)) {
            Worth& worth = states_[term].anywhere;
            if (worth == TermState::unknown)
                worth = bestOf(term, anywhere);
            if (worth != noWorth)
                return true;
        }
        return false;
    }

    Worth bestOf(std::uint32_t number, const PlaceWorths& worths) const
    {
        const LiteralMatcher& term = matchers_.terms[number];
        const bool mayStand = matchers_.termPairs_ ? (terms_ >> number & 1) != 0 : !pairs_ || term.mayStandIn(*pairs_);
        return mayStand ? term.best(texts_, worths) : noWorth;
    }

    const Matchers& matchers_;
    LoweredTexts& texts_;
    std::optional<BytePairs> pairs_;
    TermPairs::Terms terms_ = ~TermPairs::Terms{0};  // that may stand in the texts, as far as termPairs_ can tell
    TermState* const states_;
    const Worth exact_;
    const PlaceWorths& worths_;
};

LibraryResultCategorizer::Matchers::Matchers(const Library::Search::Info& info)
    : CompiledSearch(info), textSearch(info.textSearch)
{
    if (terms.size() >= fewestTermsForPairs && terms.size() <= TermPairs::mostTerms)
        termPairs_ = std::make_unique<const TermPairs>(*this);
    looksAtGivenTexts =
        terms.size() < fewestTermsForPairs && std::all_of(groups.begin(), groups.end(), [this](const Group& group) {
            return group.requiredBegin < group.excludedBegin &&
                   terms[groupTerms[group.requiredBegin]].plainPart().isSelective();
        });
}

// Of several threads that want it at the same time, the first to have made it gives it to all.
const SearchPlan& LibraryResultCategorizer::Matchers::plan() const
{
    const SearchPlan* plan = plan_.load(std::memory_order_acquire);
    if (plan == nullptr) {
        auto made = std::make_unique<const SearchPlan>(*this);
        if (plan_.compare_exchange_strong(plan, made.get(), std::memory_order_acq_rel))
            plan = made.release();
    }
    return *plan;
}

// Whether some group has all its required terms in the texts, as far as that can be told before the texts are
// lowered. Most texts fail here.
bool LibraryResultCategorizer::Matchers::mayMatch(std::string_view name, std::string_view keywords) const
{
    const auto mayStand = [&](std::uint32_t term) {
        const PlainPart& part = terms[term].plainPart();
        return part.mayStandIn(keywords) || part.mayStandIn(name);
    };
    return std::any_of(groups.begin(), groups.end(), [&](const Group& group) {
        const auto required = this->required(group);
        return std::all_of(required.begin(), required.end(), mayStand);
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

// The same for texts in lower case, which cannot tell less than the texts that they were made from.
SearchPriority LibraryResultCategorizer::Matchers::rate(const NameBlock& names, std::size_t entry) const
{
    const std::string_view name = names.name(entry);
    const std::optional<std::string_view> keywords = names.keywords(entry);
    const std::size_t statesSize = terms.size() * sizeof(TermState);
    const RatingMemory memory(statesSize + LoweredTexts::room(name.size(), keywords ? keywords->size() : 0));
    auto* const states = reinterpret_cast<TermState*>(memory.data());
    std::uninitialized_fill_n(states, terms.size(), TermState{});
    LoweredTexts texts = LoweredTexts::copyOf(memory.data() + statesSize, name, keywords);
    const Worth best = Rating(*this, names.isFolder(entry) ? folderWorths : itemWorths, texts, states).best();
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

void LibraryResultCategorizer::categorize(const PreparedNames& names, std::size_t begin,
                                          std::span<std::uint8_t> priorities) const
{
    const NameBlock& block = *names.block_;
    const std::size_t count = begin < block.size() ? std::min(priorities.size(), block.size() - begin) : 0;
    std::fill(priorities.begin() + static_cast<std::ptrdiff_t>(count), priorities.end(), std::uint8_t{Invalid});
    if (count == 0)
        return;
    const SearchPlan& plan = matchers_->plan();
    if (!plan.oneByOne())
        return rateInBulk(*matchers_, plan, block, begin, priorities.first(count));
    for (std::size_t i = 0; i < count; ++i)
        priorities[i] = static_cast<std::uint8_t>(matchers_->rate(block, begin + i));
}

bool LibraryResultCategorizer::isTextSearch() const noexcept
{
    return matchers_->textSearch;
}
