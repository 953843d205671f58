#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/Search/detail/Alternatives.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <cstddef>
#include <memory>
#include <utility>

namespace Library::Search {
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

/// The normal form of what `text` stands for; null when it stands for nothing or is rejected.
std::unique_ptr<BooleanExp> normalFormOf(const std::u32string& text)
{
    try {
        std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
        if (expression)
            expression->convertToDisjunctiveNormalForm();
        return expression;
    } catch (...) {
        return nullptr;
    }
}

bool isEmptyText(const std::u32string& text)
{
    return text.empty();
}

}  // namespace

bool ORGroup::operator==(const ORGroup& other) const
{
    return terms == other.terms && excludedTerms == other.excludedTerms;
}

void ORGroup::removeInvalidTerms()
{
    std::erase_if(terms, isEmptyText);
    std::erase_if(excludedTerms, isEmptyText);
}

bool ParseTree::operator==(const ParseTree& other) const
{
    return groups == other.groups;
}

void ParseTree::forEachTerm(const std::function<void(std::u32string&)>& f)
{
    for (ORGroup& group : groups) {
        for (std::u32string& term : group.terms)
            f(term);
        for (std::u32string& term : group.excludedTerms)
            f(term);
    }
}

ParseTree detail::alternativesOf(const BooleanExp::Group& root)
{
    ParseTree tree;
    tree.groups.emplace_back();
    addGroup(tree, root);
    closeGroup(tree);
    return tree;
}

ParseTree parseSearchTerms(const std::u32string& text)
{
    const std::unique_ptr<BooleanExp> expression = normalFormOf(text);
    if (!expression || !expression->root)
        return {};
    return detail::alternativesOf(*expression->root);
}

}  // namespace Library::Search
