#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Search/ParseTree.h>

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using fuzz::check;
using Library::Search::ORGroup;
using Library::Search::ParseTree;

constexpr std::size_t literalLimit = 16'384;

bool isSame(const BooleanExp::Node* one, const BooleanExp::Node* other);

bool isSameGroup(const BooleanExp::Group& one, const BooleanExp::Group& other)
{
    return isSame(one.first.get(), other.first.get()) &&
           std::equal(one.conjoinedTerms.begin(), one.conjoinedTerms.end(), other.conjoinedTerms.begin(),
                      other.conjoinedTerms.end(), [](const auto& left, const auto& right) {
                          return left.conjunction == right.conjunction &&
                                 isSame(left.expression.get(), right.expression.get());
                      });
}

bool isSame(const BooleanExp::Node* one, const BooleanExp::Node* other)
{
    if (one == nullptr || other == nullptr || one->negated != other->negated)
        return one == other;
    const BooleanExp::Group* const group = one->asGroup();
    const BooleanExp::Group* const otherGroup = other->asGroup();
    if (group != nullptr && otherGroup != nullptr)
        return isSameGroup(*group, *otherGroup);
    const BooleanExp::Term* const term = one->asTerm();
    const BooleanExp::Term* const otherTerm = other->asTerm();
    return term != nullptr && otherTerm != nullptr && term->text == otherTerm->text;
}

/// Blanks around a text do not count. Seen in the expression, which says the same of its normal form, and takes
/// a small part of the time where that has thousands of terms.
void checkBlanks(const std::u32string& text, const BooleanExp* expression)
{
    if (text.size() >= 16'000)
        return;
    const std::unique_ptr<BooleanExp> again = BooleanExp::parse(U" " + text + U"\t");
    check(isSame(again ? again->root.get() : nullptr, expression != nullptr ? expression->root.get() : nullptr),
          "blanks around do not count");
}

/// The normal form as a tree, read by the rules of such a form. Null when the text is
/// rejected or has nothing to search for.
std::unique_ptr<ParseTree> readNormalForm(const std::u32string& text)
{
    const std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
    checkBlanks(text, expression.get());
    if (!expression)
        return nullptr;
    expression->convertToDisjunctiveNormalForm();
    auto tree = std::make_unique<ParseTree>();
    const auto add = [&](const std::unique_ptr<BooleanExp::Node>& node) {
        check(node != nullptr && node->asTerm() != nullptr, "every leaf is a term");
        const BooleanExp::Term& term = *node->asTerm();
        ORGroup& group = tree->groups.back();
        (term.negated ? group.excludedTerms : group.terms).push_back(term.text);
    };
    const BooleanExp::Group& root = *expression->root;
    check(!root.negated, "the root is not negated");
    check(root.conjoinedTerms.size() < literalLimit, "the normal form is bounded");
    tree->groups.emplace_back();
    add(root.first);
    root.forEachConjoinedTerm([&](const BooleanExp::Group::ConjoinedTerm& term) {
        if (term.conjunction == BooleanExp::Conjunction::Or)
            tree->groups.emplace_back();
        add(term.expression);
    });
    return tree;
}

/// The tree that a search must get, made from the normal form.
ParseTree expectedTree(const std::u32string& text)
{
    std::unique_ptr<ParseTree> tree;
    try {
        tree = readNormalForm(text);
    } catch (const std::length_error&) {
        return {};
    }
    if (!tree)
        return {};
    std::erase_if(tree->groups, [](const ORGroup& group) { return group.terms.empty(); });
    return *tree;
}

void checkTree(const ParseTree& tree)
{
    for (const ORGroup& group : tree.groups) {
        check(!group.terms.empty(), "every group has a term");
        for (const std::u32string& term : group.terms)
            check(!term.empty(), "no term is empty");
        for (const std::u32string& term : group.excludedTerms)
            check(!term.empty(), "no excluded term is empty");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::u32string text = StringConvert::toUnicode(bytes, StringConvert::Utf8);
    try {
        const ParseTree tree = Library::Search::parseSearchTerms(text);
        checkTree(tree);
        check(tree == expectedTree(text), "the search reads the normal form");
    } catch (const std::exception&) {
        check(false, "no text throws");
    }
    return 0;
}
