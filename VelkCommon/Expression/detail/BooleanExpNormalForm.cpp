#include <VelkCommon/Expression/detail/BooleanExpNormalForm.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Velk::detail {
namespace {

using Node = BooleanExp::Node;
using Term = BooleanExp::Term;
using Group = BooleanExp::Group;
using Conjunction = BooleanExp::Conjunction;
using Slot = std::unique_ptr<Node>;

constexpr std::uint64_t literalLimit = 16'384;       // terms of all alternatives, counted with repetitions
constexpr std::uint64_t characterLimit = 1'048'576;  // code points of these terms, since each may be a long word
constexpr std::size_t depthLimit = 512;              // nested groups, far more than parse() builds

/// Whether `root` already is an OR of AND-runs of leaves, with every operand present.
bool isNormalForm(const Group& root)
{
    const auto isLeaf = [](const Slot& operand) { return operand && std::as_const(*operand).asGroup() == nullptr; };
    return !root.negated && isLeaf(root.first) &&
           std::all_of(root.conjoinedTerms.begin(), root.conjoinedTerms.end(),
                       [&](const Group::ConjoinedTerm& term) { return isLeaf(term.expression); });
}

/// Whether there is any leaf in `operand`. A null pointer and a group without operands are absent.
bool isPresent(const Slot& operand, std::size_t depth)
{
    if (depth > depthLimit)
        throw std::length_error("search expression: nested too deeply");
    if (!operand)
        return false;
    const Group* group = std::as_const(*operand).asGroup();
    return group == nullptr || isPresent(group->first, depth + 1) ||
           std::any_of(group->conjoinedTerms.begin(), group->conjoinedTerms.end(),
                       [&](const Group::ConjoinedTerm& term) { return isPresent(term.expression, depth + 1); });
}

/// Calls f(operand, conjunction) for each operand of `group` that is present. An absent one is skipped together
/// with the operator before it, and the first one that is present has no operator.
template <typename Function>
void forEachOperand(Group& group, Function f)
{
    bool any = isPresent(group.first, 0);
    if (any)
        f(group.first, Conjunction::And);
    for (Group::ConjoinedTerm& term : group.conjoinedTerms) {
        if (!isPresent(term.expression, 0))
            continue;
        f(term.expression, any ? term.conjunction : Conjunction::And);
        any = true;
    }
}

/// How large the normal form of a part is. Counting stops just above the limits, so nothing overflows.
struct Extent
{
    std::uint64_t alternatives = 0;
    std::uint64_t literals = 0;
    std::uint64_t characters = 0;
};

void requireWithinLimits(const Extent& extent)
{
    if (extent.literals > literalLimit || extent.characters > characterLimit)
        throw std::length_error("search expression: too many alternatives");
}

Extent saturated(const Extent& extent)
{
    return {std::min(extent.alternatives, literalLimit + 1), std::min(extent.literals, literalLimit + 1),
            std::min(extent.characters, characterLimit + 1)};
}

Extent extentOf(const Slot& leaf)
{
    const Term* term = std::as_const(*leaf).asTerm();
    return saturated({1, 1, term != nullptr ? term->text.size() : 0});
}

Extent eitherOf(Extent left, Extent right)
{
    return saturated(
        {left.alternatives + right.alternatives, left.literals + right.literals, left.characters + right.characters});
}

Extent bothOf(Extent left, Extent right)
{
    if (left.alternatives == 0)
        return right;
    return saturated({left.alternatives * right.alternatives,
                      left.literals * right.alternatives + left.alternatives * right.literals,
                      left.characters * right.alternatives + left.alternatives * right.characters});
}

/// The extent of `group`'s normal form. Under a NOT its runs are joined by AND and their operands by OR.
Extent extentOf(Group& group, bool negated, std::size_t depth)
{
    if (depth > depthLimit)
        throw std::length_error("search expression: nested too deeply");
    const auto joinRuns = negated ? bothOf : eitherOf;
    const auto joinOperands = negated ? eitherOf : bothOf;
    Extent runs;
    Extent run;
    forEachOperand(group, [&](Slot& operand, Conjunction conjunction) {
        if (conjunction == Conjunction::Or)
            runs = joinRuns(runs, std::exchange(run, {}));
        Group* inner = operand->asGroup();
        run = joinOperands(run, inner ? extentOf(*inner, negated != inner->negated, depth + 1) : extentOf(operand));
    });
    return joinRuns(runs, run);
}

/// The alternatives of an expression, as runs of numbers of its leaves. Leaves the expression alone.
class Expansion
{
public:
    /// A leaf of the expression. Its place in the tree decides whether it is negated, so all its uses in the
    /// result agree on that.
    struct Leaf
    {
        Slot* slot = nullptr;
        bool negated = false;
        std::size_t uses = 0;
    };

    /// `extent` is that of `root`.
    Expansion(Group& root, Extent extent);

    std::vector<Leaf>& leaves() { return leaves_; }
    const std::vector<Leaf>& leaves() const { return leaves_; }
    /// The runs one after the other.
    const std::vector<std::uint32_t>& literals() const { return literals_; }
    /// Where each run ends in literals().
    const std::vector<std::uint32_t>& ends() const { return ends_; }

private:
    void add(Slot& operand, bool negated);
    void addGroup(Group& group, bool negated);
    void multiply(std::size_t firstFactor);
    void appendProduct(std::size_t firstFactor);
    bool nextChoice(std::size_t firstFactor);
    std::uint32_t beginOf(std::size_t run) const { return run == 0 ? 0 : ends_[run - 1]; }

    std::vector<Leaf> leaves_;
    std::vector<std::uint32_t> literals_;
    std::vector<std::uint32_t> ends_;
    std::vector<std::size_t> factors_;  // the first run of each factor; those of inner groups on top
    std::vector<std::size_t> choice_;   // a run of each factor, while a product is built
};

Expansion::Expansion(Group& root, Extent extent)
{
    // A product needs additional room for its factors; with twice the result's size, small ones never have to grow.
    leaves_.reserve(std::min<std::uint64_t>(extent.literals, 64));
    literals_.reserve(2 * extent.literals);
    ends_.reserve(2 * extent.alternatives + extent.literals);
    addGroup(root, root.negated);
    for (const std::uint32_t literal : literals_)
        ++leaves_[literal].uses;
}

void Expansion::add(Slot& operand, bool negated)
{
    const bool effective = negated != operand->negated;
    if (Group* group = operand->asGroup()) {
        addGroup(*group, effective);
        return;
    }
    literals_.push_back(static_cast<std::uint32_t>(leaves_.size()));
    ends_.push_back(static_cast<std::uint32_t>(literals_.size()));
    leaves_.push_back({&operand, effective, 0});
}

/// Appends the runs of `group`. A factor is a range of runs, and a product takes one run of each factor. Each
/// operand of a run is a factor; under a NOT, each run is one.
void Expansion::addGroup(Group& group, bool negated)
{
    const std::size_t firstFactor = factors_.size();
    forEachOperand(group, [&](Slot& operand, Conjunction conjunction) {
        const bool startsRun = conjunction == Conjunction::Or;
        if (startsRun && !negated)
            multiply(firstFactor);
        if (startsRun || !negated || factors_.size() == firstFactor)
            factors_.push_back(ends_.size());
        add(operand, negated);
    });
    multiply(firstFactor);
}

/// Replaces the runs of the factors from `firstFactor` on, which are the last runs, by the product of
/// these factors, and drops the factors.
void Expansion::multiply(std::size_t firstFactor)
{
    const std::size_t factorCount = factors_.size() - firstFactor;
    const std::size_t firstRun = factorCount == 0 ? ends_.size() : factors_[firstFactor];
    const std::size_t factorRuns = ends_.size() - firstRun;
    if (factorCount > 1 && factorRuns == factorCount) {
        ends_[firstRun] = ends_.back();  // one run each: joined, they already are the product
        ends_.resize(firstRun + 1);
    } else if (factorCount > 1) {
        const std::uint32_t firstLiteral = beginOf(firstRun);
        const std::uint32_t factorLiterals = ends_.back() - firstLiteral;
        appendProduct(firstFactor);
        literals_.erase(literals_.begin() + firstLiteral, literals_.begin() + firstLiteral + factorLiterals);
        const auto runs = ends_.begin() + static_cast<std::ptrdiff_t>(firstRun);
        ends_.erase(runs, runs + static_cast<std::ptrdiff_t>(factorRuns));
        for (std::size_t run = firstRun; run < ends_.size(); ++run)
            ends_[run] -= factorLiterals;
    }
    factors_.resize(firstFactor);
}

/// Appends every choice of one run per factor, the first factor varying slowest.
void Expansion::appendProduct(std::size_t firstFactor)
{
    choice_.assign(factors_.begin() + static_cast<std::ptrdiff_t>(firstFactor), factors_.end());
    factors_.push_back(ends_.size());  // where the last factor ends
    do {
        for (const std::size_t run : choice_) {
            for (std::uint32_t literal = beginOf(run); literal < ends_[run]; ++literal)
                literals_.push_back(std::uint32_t(literals_[literal]));
        }
        ends_.push_back(static_cast<std::uint32_t>(literals_.size()));
    } while (nextChoice(firstFactor));
}

/// Moves `choice_` on to the next combination, its last place varying fastest; false after the last one.
bool Expansion::nextChoice(std::size_t firstFactor)
{
    for (std::size_t i = choice_.size(); i-- > 0;) {
        if (++choice_[i] < factors_[firstFactor + i + 1])
            return true;
        choice_[i] = factors_[firstFactor + i];
    }
    return false;
}

Slot& operandAt(Group& flat, std::size_t index)
{
    return index == 0 ? flat.first : flat.conjoinedTerms[index - 1].expression;
}

Slot copyOf(const Expansion::Leaf& leaf)
{
    const Term* term = std::as_const(**leaf.slot).asTerm();
    if (term == nullptr)
        throw std::invalid_argument("search expression: a node that is no term cannot stand in several places");
    return std::make_unique<Term>(term->text, leaf.negated);
}

/// The group that `expansion` stands for, still without the leaves themselves. The last use of each leaf stays
/// empty, so that the leaf can move there; its earlier uses get copies.
std::unique_ptr<Group> flatGroupOf(Expansion& expansion)
{
    auto flat = std::make_unique<Group>();
    const std::vector<std::uint32_t>& literals = expansion.literals();
    flat->conjoinedTerms.resize(literals.empty() ? 0 : literals.size() - 1);
    for (std::size_t i = 0; i < literals.size(); ++i) {
        Expansion::Leaf& leaf = expansion.leaves()[literals[i]];
        if (--leaf.uses > 0)
            operandAt(*flat, i) = copyOf(leaf);
    }
    for (const std::uint32_t end : expansion.ends()) {
        if (end < literals.size())
            flat->conjoinedTerms[end - 1].conjunction = Conjunction::Or;
    }
    return flat;
}

/// Moves the leaves into the places that were left empty for them.
void moveLeaves(const Expansion& expansion, Group& flat) noexcept
{
    for (std::size_t i = 0; i < expansion.literals().size(); ++i) {
        Slot& operand = operandAt(flat, i);
        if (operand)
            continue;
        const Expansion::Leaf& leaf = expansion.leaves()[expansion.literals()[i]];
        operand = std::move(*leaf.slot);
        operand->negated = leaf.negated;
    }
}

}  // namespace

void makeNormalForm(BooleanExp::Group& root)
{
    if (isNormalForm(root)) {
        Extent extent = extentOf(root.first);
        for (const Group::ConjoinedTerm& term : root.conjoinedTerms)
            extent = eitherOf(extent, extentOf(term.expression));
        requireWithinLimits(extent);
        return;
    }
    const Extent extent = extentOf(root, root.negated, 0);
    requireWithinLimits(extent);
    Expansion expansion(root, extent);
    const std::unique_ptr<Group> flat = flatGroupOf(expansion);
    moveLeaves(expansion, *flat);
    std::swap(root.first, flat->first);
    std::swap(root.conjoinedTerms, flat->conjoinedTerms);
    root.negated = false;
}

}  // namespace Velk::detail
