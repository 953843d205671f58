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
#include <vector>

namespace {

using fuzz::check;
using Library::Search::ORGroup;
using Library::Search::ParseTree;

constexpr std::size_t literalLimit = 16'384;
constexpr std::size_t blanksLimit = 16'000;  // code points, below that of the longest text

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
    if (text.size() >= blanksLimit)
        return;
    const std::unique_ptr<BooleanExp> again = BooleanExp::parse(U" " + text + U"\t");
    check(isSame(again ? again->root.get() : nullptr, expression != nullptr ? expression->root.get() : nullptr),
          "blanks around do not count");
}

/// Goes through a normal form and the tree of a search side by side. Nothing is copied, as most of the time goes into
/// forms of thousands of terms.
class Comparison
{
public:
    explicit Comparison(const ParseTree& tree) : tree_(tree) {}

    void add(const BooleanExp::Node* node)
    {
        const BooleanExp::Term* const term = node == nullptr ? nullptr : node->asTerm();
        check(term != nullptr, "every leaf is a term");
        check(!term->text.empty(), "no term is empty");
        (term->negated ? excludedTerms_ : terms_).push_back(&term->text);
    }

    /// An alternative is complete. One that requires nothing has no place in the tree.
    void endAlternative()
    {
        if (!terms_.empty()) {
            check(next_ < tree_.groups.size(), "every alternative has a group");
            const ORGroup& group = tree_.groups[next_++];
            check(isEqual(terms_, group.terms) && isEqual(excludedTerms_, group.excludedTerms),
                  "the group has the alternative's terms");
        }
        terms_.clear();
        excludedTerms_.clear();
    }

    void end()
    {
        endAlternative();
        check(next_ == tree_.groups.size(), "every group is an alternative");
    }

private:
    using Texts = std::vector<const std::u32string*>;

    static bool isEqual(const Texts& left, const std::vector<std::u32string>& right)
    {
        return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                          [](const std::u32string* one, const std::u32string& other) { return *one == other; });
    }

    const ParseTree& tree_;
    std::size_t next_ = 0;
    Texts terms_;
    Texts excludedTerms_;
};

/// Reads the normal form by the rules of such a form: the tree must be the same.
void checkNormalForm(const std::u32string& text, const ParseTree& tree)
{
    const std::unique_ptr<BooleanExp> expression = BooleanExp::parse(text);
    checkBlanks(text, expression.get());
    Comparison comparison(tree);
    if (expression) {
        expression->convertToDisjunctiveNormalForm();
        const BooleanExp::Group& root = *expression->root;
        check(!root.negated, "the root is not negated");
        check(root.conjoinedTerms.size() < literalLimit, "the normal form is bounded");
        comparison.add(root.first.get());
        root.forEachConjoinedTerm([&](const BooleanExp::Group::ConjoinedTerm& term) {
            if (term.conjunction == BooleanExp::Conjunction::Or)
                comparison.endAlternative();
            comparison.add(term.expression.get());
        });
    }
    comparison.end();
}

/// Where there is too much of something, there is nothing to search for.
void checkRefusal(const std::u32string& text, const ParseTree& tree)
{
    check(tree.groups.empty(), "a text that is refused has no alternatives");
    if (text.size() < blanksLimit)
        check(Library::Search::parseSearchTerms(U" " + text + U"\t") == tree, "blanks around do not count");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::u32string text = StringConvert::toUnicode(bytes, StringConvert::Utf8);
    try {
        const ParseTree tree = Library::Search::parseSearchTerms(text);
        try {
            checkNormalForm(text, tree);
        } catch (const std::length_error&) {
            checkRefusal(text, tree);
        }
    } catch (const std::exception&) {
        check(false, "no text throws");
    }
    return 0;
}
