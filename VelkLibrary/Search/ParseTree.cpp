#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkLibrary/Search/detail/Alternatives.h>

#include <memory>
#include <stdexcept>

namespace Library::Search {
namespace {

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
    try {
        const std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
        return expression ? detail::alternativesOf(*expression) : ParseTree();
    } catch (const std::length_error&) {
        return {};
    }
}

}  // namespace Library::Search
