#include <VelkCommon/Expression/BooleanExp.h>

#include <VelkCommon/Expression/detail/BooleanExpNormalForm.h>
#include <VelkCommon/Expression/detail/BooleanExpParser.h>

#include <utility>

namespace {

/// Takes the group out of `slot`, puts the group's first operand in its place, and returns the group. Null,
/// with nothing changed, when `slot` does not hold a group.
BooleanExp::Group* exchangeForFirstOperand(std::unique_ptr<BooleanExp::Node>& slot)
{
    BooleanExp::Group* group = slot ? slot->asGroup() : nullptr;
    if (group == nullptr || group != slot.get())
        return nullptr;
    static_cast<void>(slot.release());
    slot = std::move(group->first);
    return group;
}

/// Drops the operands of `group` after the first until one is a group, and returns that one; null when none is left.
BooleanExp::Group* dropUntilGroup(BooleanExp::Group& group)
{
    while (!group.conjoinedTerms.empty()) {
        if (BooleanExp::Group* below = exchangeForFirstOperand(group.conjoinedTerms.back().expression))
            return below;
        group.conjoinedTerms.pop_back();
    }
    return nullptr;
}

}  // namespace

BooleanExp::Node::~Node() = default;

BooleanExp::Term* BooleanExp::Node::asTerm()
{
    return nullptr;
}

const BooleanExp::Term* BooleanExp::Node::asTerm() const
{
    return nullptr;
}

BooleanExp::Group* BooleanExp::Node::asGroup()
{
    return nullptr;
}

const BooleanExp::Group* BooleanExp::Node::asGroup() const
{
    return nullptr;
}

BooleanExp::Term::Term(std::u32string termText, bool isNegated) : text(std::move(termText))
{
    negated = isNegated;
}

BooleanExp::Term::~Term() = default;

BooleanExp::Term* BooleanExp::Term::asTerm()
{
    return this;
}

const BooleanExp::Term* BooleanExp::Term::asTerm() const
{
    return this;
}

// Groups may be nested too deeply for destructors that call each other, and a destructor must not
// allocate. So the groups below are emptied one after the other, and the `first` of the group at work,
// whose own first operand has moved up into its former place, keeps the way back to the group above.
BooleanExp::Group::~Group()
{
    Group* current = this;
    for (;;) {
        Group* below = dropUntilGroup(*current);
        if (below == nullptr && current == this)
            below = exchangeForFirstOperand(first);
        if (below != nullptr) {
            below->first.reset(current);
            current = below;
        } else if (current != this) {
            Group* above = static_cast<Group*>(current->first.release());
            delete current;
            current = above;
        } else {
            return;
        }
    }
}

BooleanExp::Group* BooleanExp::Group::asGroup()
{
    return this;
}

const BooleanExp::Group* BooleanExp::Group::asGroup() const
{
    return this;
}

void BooleanExp::Group::forEachConjoinedTerm(const std::function<void(const ConjoinedTerm&)>& f) const
{
    for (const ConjoinedTerm& term : conjoinedTerms)
        f(term);
}

std::unique_ptr<BooleanExp> BooleanExp::parse(const std::u32string& text)
{
    std::unique_ptr<Group> root = Velk::detail::parseExpression(text);
    if (!root)
        return nullptr;
    auto expression = std::make_unique<BooleanExp>();
    expression->root = std::move(root);
    return expression;
}

void BooleanExp::convertToDisjunctiveNormalForm()
{
    if (root)
        Velk::detail::makeNormalForm(*root);
}
