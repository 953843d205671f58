#include <VelkLibrary/Search/detail/SearchPlan.h>

#include <VelkLibrary/Search/detail/CompiledSearch.h>

#include <algorithm>
#include <compare>
#include <cstddef>
#include <iterator>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>

namespace Library::Search::detail {
namespace {

bool isOdd(const LiteralMatcher& term)
{
    return term.term().empty() || term.term().size() > SearchPlan::longestTerm || term.hasBreak();
}

bool isOdd(const CompiledSearch& search)
{
    const auto requiresNothing = [&](const CompiledSearch::Group& group) { return search.required(group).empty(); };
    return std::any_of(search.terms.begin(), search.terms.end(), [](const auto& term) { return isOdd(term); }) ||
           std::any_of(search.groups.begin(), search.groups.end(), requiresNothing);
}

bool isBefore(const SearchPlan::ExactText& a, const SearchPlan::ExactText& b)
{
    return a.text < b.text;
}

std::uint64_t scattered(std::uint64_t value)
{
    value = (value + 1) * 0x9E3779B97F4A7C15;
    value = (value ^ value >> 32) * 0xD6E8FEB86659FD93;
    return value ^ value >> 32;
}

// What each term stands together with in its groups, as a number.
std::vector<std::uint64_t> companies(const CompiledSearch& search)
{
    std::vector<std::uint64_t> result(search.terms.size());
    for (const CompiledSearch::Group& group : search.groups) {
        std::uint64_t all = 0;
        for (const std::uint32_t term : search.required(group))
            all += scattered(term);
        for (const std::uint32_t term : search.excluded(group))
            all += scattered(~std::uint64_t{term});
        for (const std::uint32_t term : search.required(group))
            result[term] += scattered(all - scattered(term));
    }
    return result;
}

// The terms from rare to frequent, except that those which stand in the same company, as "red" and "green" do in
// "(red OR green) chair", come one after the other: in that order a product of alternatives has the fewest steps.
std::vector<std::uint32_t> termOrder(const CompiledSearch& search)
{
    const std::vector<std::uint64_t> company = companies(search);
    std::map<std::uint64_t, unsigned> highest;
    for (std::size_t term = 0; term < company.size(); ++term)
        highest[company[term]] = std::max(highest[company[term]], search.terms[term].frequency());
    const auto rank = [&](std::uint32_t term) {
        return std::tuple(highest[company[term]], company[term], search.terms[term].frequency(), term);
    };
    std::vector<std::uint32_t> order(search.terms.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](auto a, auto b) { return rank(a) < rank(b); });
    return order;
}

}  // namespace

/// Builds the graph from the groups in the order of their ways, so that a node is complete once a group leaves it. One
/// from which the same ways lead on as from another is taken as that one.
class SearchPlan::Builder
{
public:
    Builder(SearchPlan& plan, const CompiledSearch& search) : plan_(plan), search_(search), order_(termOrder(search))
    {
        ranks_.resize(order_.size());
        for (std::uint32_t rank = 0; rank < order_.size(); ++rank)
            ranks_[order_[rank]] = rank;
    }

    void build()
    {
        std::vector<Way> ways(search_.groups.size());
        for (std::uint32_t group = 0; group < ways.size(); ++group)
            ways[group] = wayOf(group);
        std::sort(ways.begin(), ways.end());
        open_.emplace_back();
        for (const Way& way : ways)
            add(way);
        leave(0);
        plan_.nodeCount_ = std::size_t{numberOf(open_.front())} + 1;
        turnNumbers();
        std::sort(plan_.steps_.begin(), plan_.steps_.end(),
                  [this](const Step& a, const Step& b) { return ranks_[a.term] < ranks_[b.term]; });
        for (const Step& step : plan_.steps_) {
            if (step.from == 0)
                plan_.firstTerms_.push_back(step.term);
        }
    }

private:
    /// The ranks of a group's terms, and a group with the same exclusions.
    struct Way
    {
        std::vector<std::uint32_t> ranks;
        std::uint32_t group = 0;
        auto operator<=>(const Way&) const = default;
    };

    /// How it goes on from a node: each time a rank and a node, or `noRank` and a group.
    using WaysOn = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

    static constexpr std::uint32_t noRank = UINT32_MAX;

    Way wayOf(std::uint32_t group)
    {
        const auto required = search_.required(search_.groups[group]);
        const auto excluded = search_.excluded(search_.groups[group]);
        Way way{{}, byExclusions_.try_emplace({excluded.begin(), excluded.end()}, group).first->second};
        std::transform(required.begin(), required.end(), std::back_inserter(way.ranks),
                       [this](std::uint32_t term) { return ranks_[term]; });
        std::sort(way.ranks.begin(), way.ranks.end());
        return way;
    }

    void add(const Way& way)
    {
        const auto parting = std::mismatch(path_.begin(), path_.end(), way.ranks.begin(), way.ranks.end()).second;
        leave(static_cast<std::size_t>(parting - way.ranks.begin()));
        path_ = way.ranks;
        open_.resize(path_.size() + 1);
        const std::pair theEnd(noRank, way.group);
        if (open_.back().empty() || open_.back().back() != theEnd)
            open_.back().push_back(theEnd);
    }

    /// Completes the nodes behind the first `depth` steps of the path.
    void leave(std::size_t depth)
    {
        for (; path_.size() > depth; path_.pop_back()) {
            const std::uint32_t node = numberOf(open_.back());
            open_.pop_back();
            open_.back().emplace_back(path_.back(), node);
        }
    }

    std::uint32_t numberOf(const WaysOn& waysOn)
    {
        const auto [place, isNew] = numbers_.try_emplace(waysOn, static_cast<std::uint32_t>(numbers_.size()));
        const std::uint32_t number = place->second;
        for (std::size_t i = 0; i < waysOn.size() && isNew; ++i) {
            const auto [rank, target] = waysOn[i];
            if (rank == noRank)
                plan_.ends_.push_back({number, target});
            else
                plan_.steps_.push_back({order_[rank], number, target});
        }
        return number;
    }

    /// The first node was completed last.
    void turnNumbers()
    {
        const auto last = static_cast<std::uint32_t>(plan_.nodeCount_ - 1);
        for (Step& step : plan_.steps_)
            step = {step.term, last - step.from, last - step.to};
        for (End& end : plan_.ends_)
            end.node = last - end.node;
    }

    SearchPlan& plan_;
    const CompiledSearch& search_;
    const std::vector<std::uint32_t> order_;  // the terms by their ranks
    std::vector<std::uint32_t> ranks_;
    std::map<std::vector<std::uint32_t>, std::uint32_t> byExclusions_;  // the first group that has them
    std::vector<std::uint32_t> path_;                                   // the ranks of the group before
    std::vector<WaysOn> open_;                                          // of the nodes on the path
    std::map<WaysOn, std::uint32_t> numbers_;
};

SearchPlan::SearchPlan(const CompiledSearch& search) : oneByOne_(isOdd(search))
{
    if (oneByOne_)
        return;
    Builder(*this, search).build();
    exactTexts_.reserve(search.groups.size());
    for (std::uint32_t group = 0; group < search.groups.size(); ++group) {
        const std::string_view text = search.groups[group].exactText;
        exactTexts_.push_back({text, group});
        textSizes_ |= std::uint64_t{1} << text.size() % 64;
    }
    std::sort(exactTexts_.begin(), exactTexts_.end(), isBefore);
}

std::span<const SearchPlan::ExactText> SearchPlan::groupsWithText(std::string_view text) const noexcept
{
    const auto [begin, end] = std::equal_range(exactTexts_.begin(), exactTexts_.end(), ExactText{text, 0}, isBefore);
    return {begin, end};
}

}  // namespace Library::Search::detail
