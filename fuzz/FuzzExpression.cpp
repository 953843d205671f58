#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Search/ParseTree.h>

#include "Check.h"

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

/// The normal form as a tree, read by the rules of such a form. Null when the text is
/// rejected or has nothing to search for.
std::unique_ptr<ParseTree> readNormalForm(const std::u32string& text)
{
    const std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
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
        if (text.size() < 16'000)
            check(Library::Search::parseSearchTerms(U" " + text + U"\t") == tree, "blanks around do not count");
    } catch (const std::exception&) {
        check(false, "no text throws");
    }
    return 0;
}
