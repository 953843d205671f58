#include <VelkLibrary/Search/detail/Alternatives.h>

#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Library::Search::detail {
namespace {

using Literal = BooleanExp::Literal;

/// Adds the text of a literal to the group. The expression has no further use for a text after its last literal.
void addLiteral(ORGroup& group, const Literal& literal)
{
    BooleanExp::Term* const term = literal.leaf->asTerm();
    if (term == nullptr)
        return Velk::assertionFailed(Library::detail::places::unknownNode, "Unhandled type");
    std::vector<std::u32string>& list = literal.negated ? group.excludedTerms : group.terms;
    if (literal.isLast)
        list.push_back(std::move(term->text));
    else
        list.push_back(term->text);
}

ORGroup groupOf(std::span<const Literal> alternative)
{
    ORGroup group;
    const auto excluded = std::count_if(alternative.begin(), alternative.end(), std::mem_fn(&Literal::negated));
    group.excludedTerms.reserve(static_cast<std::size_t>(excluded));
    group.terms.reserve(alternative.size() - static_cast<std::size_t>(excluded));
    for (const Literal& literal : alternative)
        addLiteral(group, literal);
    group.removeInvalidTerms();
    return group;
}

}  // namespace

ParseTree alternativesOf(BooleanExp& expression)
{
    ParseTree tree;
    expression.forEachAlternative([&tree](std::span<const Literal> alternative) {
        ORGroup group = groupOf(alternative);
        if (!group.terms.empty())
            tree.groups.push_back(std::move(group));
    });
    return tree;
}

}  // namespace Library::Search::detail
