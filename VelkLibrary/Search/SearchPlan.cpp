#include <VelkLibrary/Search/detail/SearchPlan.h>

#include <VelkLibrary/Search/detail/CompiledSearch.h>

#include <algorithm>
#include <numeric>
#include <tuple>

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

// The places of the terms in the order from rare to frequent, in which each group has its terms.
std::vector<std::uint32_t> ranksOf(const std::vector<LiteralMatcher>& terms)
{
    std::vector<std::uint32_t> order(terms.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto rarity = [&](std::uint32_t term) { return std::pair(terms[term].frequency(), term); };
    std::sort(order.begin(), order.end(), [&](auto a, auto b) { return rarity(a) < rarity(b); });
    std::vector<std::uint32_t> ranks(terms.size());
    for (std::uint32_t rank = 0; rank < order.size(); ++rank)
        ranks[order[rank]] = rank;
    return ranks;
}

// The groups in an order in which those that begin with the same terms stand together.
std::vector<std::uint32_t> groupsByTerms(const CompiledSearch& search)
{
    std::vector<std::uint32_t> order(search.groups.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        const auto left = search.required(search.groups[a]);
        const auto right = search.required(search.groups[b]);
        return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end());
    });
    return order;
}

bool isBefore(const SearchPlan::ExactText& a, const SearchPlan::ExactText& b)
{
    return a.text < b.text;
}

}  // namespace

SearchPlan::SearchPlan(const CompiledSearch& search) : oneByOne_(isOdd(search))
{
    if (oneByOne_)
        return;
    growTrees(search);
    orderNodes(search);
    exactTexts_.reserve(search.groups.size());
    for (std::uint32_t group = 0; group < search.groups.size(); ++group) {
        const std::string_view text = search.groups[group].exactText;
        exactTexts_.push_back({text, group});
        textSizes_ |= std::uint64_t{1} << text.size() % 64;
    }
    std::sort(exactTexts_.begin(), exactTexts_.end(), isBefore);
}

void SearchPlan::growTrees(const CompiledSearch& search)
{
    leaves_.resize(search.groups.size());
    std::vector<std::uint32_t> path;  // the nodes of the group before
    for (const std::uint32_t group : groupsByTerms(search)) {
        const auto terms = search.required(search.groups[group]);
        std::size_t common = 0;
        while (common < std::min(path.size(), terms.size()) && nodes_[path[common]].term == terms[common])
            ++common;
        path.resize(common);
        for (const std::uint32_t term : terms.subspan(common)) {
            nodes_.push_back({term, path.empty() ? none : path.back()});
            path.push_back(static_cast<std::uint32_t>(nodes_.size() - 1));
        }
        leaves_[group] = path.back();
    }
}

void SearchPlan::orderNodes(const CompiledSearch& search)
{
    const std::vector<std::uint32_t> ranks = ranksOf(search.terms);
    std::vector<std::uint32_t> order(nodes_.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return std::pair(ranks[nodes_[a].term], a) < std::pair(ranks[nodes_[b].term], b);
    });
    std::vector<std::uint32_t> places(nodes_.size());
    for (std::uint32_t place = 0; place < order.size(); ++place)
        places[order[place]] = place;
    std::vector<Node> ordered;
    ordered.reserve(nodes_.size());
    for (const std::uint32_t node : order) {
        const std::uint32_t parent = nodes_[node].parent;
        ordered.push_back({nodes_[node].term, parent == none ? none : places[parent]});
        if (parent == none)
            firstTerms_.push_back(nodes_[node].term);
    }
    nodes_ = std::move(ordered);
    for (std::uint32_t& leaf : leaves_)
        leaf = places[leaf];
}

std::span<const SearchPlan::ExactText> SearchPlan::groupsWithText(std::string_view text) const noexcept
{
    const auto [begin, end] = std::equal_range(exactTexts_.begin(), exactTexts_.end(), ExactText{text, 0}, isBefore);
    return {begin, end};
}

}  // namespace Library::Search::detail
