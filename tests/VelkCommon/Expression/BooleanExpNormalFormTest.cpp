#include <VelkCommon/Expression/BooleanExp.h>

#include "ExpressionText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <stdexcept>

namespace {

using test::build;
using test::describe;
using Group = BooleanExp::Group;
using Node = BooleanExp::Node;

struct NormalFormCase
{
    const char* name;
    const char* tree;
    const char* normalForm;
};

void PrintTo(const NormalFormCase& row, std::ostream* out)
{
    *out << row.tree;
}

const NormalFormCase normalFormCases[] = {
    // Expressions already in normal form stay
    {"Term", "a", "a"},
    {"NegatedTerm", "!a", "!a"},
    {"Runs", "a & !b | c & d | e", "a & !b | c & d | e"},
    {"Repetitions", "a & a | a & a", "a & a | a & a"},
    {"UnknownNodes", "? & a | !?", "? & a | !?"},
    // AND over OR
    {"OrAndTerm", "(a | b) & c", "a & c | b & c"},
    {"TermAndOr", "a & (b | c)", "a & b | a & c"},
    {"OrAndOr", "(a | b) & (c | d)", "a & c | a & d | b & c | b & d"},
    {"LeftVariesSlowest", "(a | b) & (c | d) & (e | f)",
     "a & c & e | a & c & f | a & d & e | a & d & f | b & c & e | b & c & f | b & d & e | b & d & f"},
    {"AndBindsTighter", "a & b | c & (d | e) | f", "a & b | c & d | c & e | f"},
    {"RunsInGroup", "(a & b | c) & d", "a & b & d | c & d"},
    {"Nested", "a & (b & (c | d))", "a & b & c | a & b & d"},
    {"NestedOrs", "a & (b | (c | d & (e | f)))", "a & b | a & c | a & d & e | a & d & f"},
    {"GroupOfOne", "((a))", "a"},
    {"RepetitionsMultiply", "(a | a) & a", "a & a | a & a"},
    // De Morgan
    {"NotOr", "a & !(b | c)", "a & !b & !c"},
    {"NotAnd", "a & !(b & c)", "a & !b | a & !c"},
    {"NotRuns", "!(a & b | c & d)", "!a & !c | !a & !d | !b & !c | !b & !d"},
    {"NotNot", "!(!(a | b) & c)", "a | b | !c"},
    {"NotOfNegatedTerm", "!(a & !b)", "!a | b"},
    {"NotThreeRuns", "!(a | b & c | d)", "!a & !b & !d | !a & !c & !d"},
    {"NotNestedProduct", "!(a | !(b | c))", "!a & b | !a & c"},
    // Absent operands are left out with the operator before them
    {"NullFirst", "_ & a", "a"},
    {"NullFirstOr", "_ | a & b", "a & b"},
    {"NullInTheMiddle", "a | _ & b", "a & b"},
    {"NullBeforeOr", "a & _ | b", "a | b"},
    {"NullAtTheEnd", "a | _", "a"},
    {"EmptyGroup", "a | () & b", "a & b"},
    {"EmptyGroups", "((_ & ()) | (())) & a", "a"},
    {"NegatedEmptyGroup", "a & !()", "a"},
    {"Nothing", "", ""},
    {"NothingInGroups", "(() | _)", ""},
    // Nodes of other kinds are moved, never copied
    {"UnknownMoves", "(? & a)", "? & a"},
    {"UnknownUnderNot", "!(? & a)", "!? | !a"},
    {"UnknownBesideProduct", "(a | b) & c | ?", "a & c | b & c | ?"},
    {"UnknownAsAlternative", "(a | ?) & c", "a & c | ? & c"},
};

class NormalForm : public testing::TestWithParam<NormalFormCase>
{};

TEST_P(NormalForm, IsAsDescribed)
{
    BooleanExp expression = build(GetParam().tree);
    ASSERT_EQ(describe(expression), GetParam().tree);
    expression.convertToDisjunctiveNormalForm();
    EXPECT_EQ(describe(expression), GetParam().normalForm);
}

TEST_P(NormalForm, StaysOnceReached)
{
    BooleanExp expression = build(GetParam().normalForm);
    expression.convertToDisjunctiveNormalForm();
    EXPECT_EQ(describe(expression), GetParam().normalForm);
}

INSTANTIATE_TEST_SUITE_P(BooleanExp, NormalForm, testing::ValuesIn(normalFormCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(BooleanExpNormalForm, NegatesTheRoot)
{
    for (const char* tree : {"a & b", "(a & b)"}) {
        BooleanExp expression = build(tree);
        expression.root->negated = true;
        expression.convertToDisjunctiveNormalForm();
        EXPECT_FALSE(expression.root->negated);
        EXPECT_EQ(describe(expression), "!a | !b");
    }
}

TEST(BooleanExpNormalForm, NeedsNoRoot)
{
    BooleanExp expression;
    expression.convertToDisjunctiveNormalForm();
    EXPECT_EQ(expression.root, nullptr);
}

TEST(BooleanExpNormalForm, KeepsTheRootAndTheLeaves)
{
    BooleanExp expression = build("a & !(b | c)");
    const Group* root = expression.root.get();
    const Node* a = expression.root->first.get();
    const Node* c = expression.root->conjoinedTerms[0].expression->asGroup()->conjoinedTerms[0].expression.get();
    expression.convertToDisjunctiveNormalForm();
    EXPECT_EQ(expression.root.get(), root);
    EXPECT_EQ(expression.root->first.get(), a);
    EXPECT_EQ(expression.root->conjoinedTerms[1].expression.get(), c);
}

TEST(BooleanExpNormalForm, RefusesToCopyAnUnknownNode)
{
    BooleanExp expression = build("(a | b) & ?");
    EXPECT_THROW(expression.convertToDisjunctiveNormalForm(), std::invalid_argument);
    EXPECT_EQ(describe(expression), "(a | b) & ?");
}

// ---- the limit of 16,384 terms

std::string pairs(std::size_t count)
{
    std::string tree;
    for (std::size_t i = 0; i < count; ++i)
        tree += (i == 0 ? "" : " & ") + std::string("(a | b)");
    return tree;
}

TEST(BooleanExpNormalForm, BuildsTenPairs)
{
    BooleanExp expression = build(pairs(10));
    expression.convertToDisjunctiveNormalForm();
    EXPECT_EQ(expression.root->conjoinedTerms.size(), 10'239U);
}

TEST(BooleanExpNormalForm, LeavesWhatIsTooLarge)
{
    for (const std::size_t count : {11U, 30U, 64U, 200U}) {
        BooleanExp expression = build(pairs(count));
        EXPECT_THROW(expression.convertToDisjunctiveNormalForm(), std::length_error) << count;
        EXPECT_EQ(describe(expression), pairs(count));
    }
}

TEST(BooleanExpNormalForm, CountsProductsUnderNot)
{
    std::string runs = "a & b";
    for (int i = 0; i < 29; ++i)
        runs += " | a & b";
    BooleanExp expression = build("!(" + runs + ")");
    EXPECT_THROW(expression.convertToDisjunctiveNormalForm(), std::length_error);
    EXPECT_EQ(describe(expression), "!(" + runs + ")");
}

BooleanExp flat(std::size_t terms)
{
    BooleanExp expression = build("a");
    for (std::size_t i = 1; i < terms; ++i)
        expression.root->conjoinedTerms.push_back({std::make_unique<BooleanExp::Term>(U"a"), Group::Or});
    return expression;
}

TEST(BooleanExpNormalForm, LimitsFlatExpressionsToo)
{
    BooleanExp largest = flat(16'384);
    EXPECT_NO_THROW(largest.convertToDisjunctiveNormalForm());
    BooleanExp tooLarge = flat(16'385);
    EXPECT_THROW(tooLarge.convertToDisjunctiveNormalForm(), std::length_error);
}

TEST(BooleanExpNormalForm, TakesExactlyTheLimit)
{
    // 128 alternatives of two terms, times 32 alternatives of two terms: 4,096 runs of four.
    const auto runs = [](int count) {
        std::string text = "a & b";
        for (int i = 1; i < count; ++i)
            text += " | a & b";
        return "(" + text + ")";
    };
    BooleanExp largest = build(runs(128) + " & " + runs(32));
    largest.convertToDisjunctiveNormalForm();
    EXPECT_EQ(largest.root->conjoinedTerms.size(), 16'383U);

    BooleanExp tooLarge = build(runs(128) + " & " + runs(32) + " | a");
    EXPECT_THROW(tooLarge.convertToDisjunctiveNormalForm(), std::length_error);
}

TEST(BooleanExpNormalForm, LimitsTheCharacters)
{
    const auto product = [](std::size_t wordLength) {
        BooleanExp expression = build("(a | a | a | a | a | a | a | a) & (a | a | a | a | a | a | a | a)");
        Group& left = *expression.root->first->asGroup();
        left.conjoinedTerms.push_back(
            {std::make_unique<BooleanExp::Term>(std::u32string(wordLength, U'x')), Group::Or});
        return expression;
    };
    // 9 times 8 alternatives: 72 letters of the right and 64 of the left factor, 8 words.
    BooleanExp largest = product((1'048'576 - 72 - 64) / 8);
    EXPECT_NO_THROW(largest.convertToDisjunctiveNormalForm());
    BooleanExp tooLarge = product((1'048'576 - 72 - 64) / 8 + 1);
    EXPECT_THROW(tooLarge.convertToDisjunctiveNormalForm(), std::length_error);
    EXPECT_NE(tooLarge.root->first->asGroup(), nullptr);
}

TEST(BooleanExpNormalForm, LimitsTheCharactersOfFlatExpressionsToo)
{
    BooleanExp expression = build("a | b");
    expression.root->first->asTerm()->text.assign(1'048'575, U'x');
    EXPECT_NO_THROW(expression.convertToDisjunctiveNormalForm());
    expression.root->first->asTerm()->text.push_back(U'x');
    EXPECT_THROW(expression.convertToDisjunctiveNormalForm(), std::length_error);
}

// ---- equivalence, over all assignments of six variables at once: bit i of a value is the result
// under assignment i

constexpr std::uint64_t variables[] = {0xAAAAAAAAAAAAAAAA, 0xCCCCCCCCCCCCCCCC, 0xF0F0F0F0F0F0F0F0,
                                       0xFF00FF00FF00FF00, 0xFFFF0000FFFF0000, 0xFFFFFFFF00000000};

std::uint64_t valueOf(const Node& node)
{
    std::uint64_t value = 0;
    if (const Group* group = node.asGroup()) {
        std::uint64_t run = valueOf(*group->first);
        for (const Group::ConjoinedTerm& term : group->conjoinedTerms) {
            if (term.conjunction == Group::Or)
                value |= std::exchange(run, ~std::uint64_t{0});
            run &= valueOf(*term.expression);
        }
        value |= run;
    } else {
        value = variables[node.asTerm()->text.at(0) - U'a'];
    }
    return node.negated ? ~value : value;
}

class RandomTrees
{
public:
    std::unique_ptr<Group> group(int depth)
    {
        auto result = std::make_unique<Group>();
        result->first = operand(depth);
        for (unsigned more = below(4); more > 0; --more)
            result->conjoinedTerms.push_back({operand(depth), below(2) == 0 ? Group::And : Group::Or});
        return result;
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

private:
    std::unique_ptr<Node> operand(int depth)
    {
        std::unique_ptr<Node> result;
        if (depth > 0 && below(2) == 0)
            result = group(depth - 1);
        else
            result = std::make_unique<BooleanExp::Term>(std::u32string(1, U'a' + below(6)));
        result->negated = below(3) == 0;
        return result;
    }

    std::mt19937 random_{20'260'101};
};

bool isFlat(const Group& group)
{
    bool flat = group.first->asTerm() != nullptr && !group.negated;
    group.forEachConjoinedTerm(
        [&](const Group::ConjoinedTerm& term) { flat = flat && term.expression->asTerm() != nullptr; });
    return flat;
}

TEST(BooleanExpNormalForm, IsEquivalentToTheExpression)
{
    RandomTrees trees;
    int converted = 0;
    for (int i = 0; i < 20'000; ++i) {
        BooleanExp expression;
        expression.root = trees.group(2);
        expression.root->negated = trees.below(4) == 0;
        const std::uint64_t value = valueOf(*expression.root);
        const std::string text = describe(expression);
        try {
            expression.convertToDisjunctiveNormalForm();
            ++converted;
            ASSERT_TRUE(isFlat(*expression.root)) << text;
        } catch (const std::length_error&) {
            ASSERT_EQ(describe(expression), text);
        }
        ASSERT_EQ(valueOf(*expression.root), value) << text;
    }
    EXPECT_GT(converted, 19'000);
}

}  // namespace
