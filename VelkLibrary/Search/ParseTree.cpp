#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkLibrary/Search/detail/Alternatives.h>

#include <memory>
#include <stdexcept>

namespace Library::Search {
namespace {

/// The normal form of what `text` stands for; null when it stands for nothing or is rejected.
std::unique_ptr<BooleanExp> normalFormOf(const std::u32string& text)
{
    try {
        std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
        if (expression)
            expression->convertToDisjunctiveNormalForm();
        return expression;
    } catch (const std::length_error&) {
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

ParseTree parseSearchTerms(const std::u32string& text)
{
    const std::unique_ptr<BooleanExp> expression = normalFormOf(text);
    if (!expression || !expression->root)
        return {};
    return detail::alternativesOf(*expression->root);
}

}  // namespace Library::Search
