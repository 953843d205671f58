#include <VelkLibrary/Search/detail/Alternatives.h>

#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <cstddef>
#include <utility>

namespace Library::Search::detail {
namespace {

void addNode(ParseTree& tree, BooleanExp::Node& node);

/// Drops the empty texts of the last group, then the group itself when it requires nothing.
void closeGroup(ParseTree& tree)
{
    tree.groups.back().removeInvalidTerms();
    if (tree.groups.back().terms.empty())
        tree.groups.pop_back();
}

/// Adds the operands of `group` to the last group of the tree; each Or starts a new one.
void addGroup(ParseTree& tree, const BooleanExp::Group& group)
{
    if (group.first)
        addNode(tree, *group.first);
    group.forEachConjoinedTerm([&tree](const BooleanExp::Group::ConjoinedTerm& term) {
        if (term.conjunction == BooleanExp::Conjunction::Or) {
            const std::size_t terms = tree.groups.back().terms.size();
            closeGroup(tree);
            tree.groups.emplace_back().terms.reserve(terms);  // the groups of a product are equally long
        }
        if (term.expression)
            addNode(tree, *term.expression);
    });
}

/// Moves the text of a term into the last group; the expression has no further use for it.
void addNode(ParseTree& tree, BooleanExp::Node& node)
{
    if (const BooleanExp::Group* group = node.asGroup()) {
        addGroup(tree, *group);
    } else if (BooleanExp::Term* term = node.asTerm()) {
        ORGroup& last = tree.groups.back();
        (term->negated ? last.excludedTerms : last.terms).push_back(std::move(term->text));
    } else {
        Velk::assertionFailed(Library::detail::places::unknownNode, "Unhandled type");
    }
}

}  // namespace

ParseTree alternativesOf(const BooleanExp::Group& root)
{
    ParseTree tree;
    tree.groups.emplace_back();
    addGroup(tree, root);
    closeGroup(tree);
    return tree;
}

}  // namespace Library::Search::detail
