#include "ExpressionText.h"

#include <VelkCommon/Text/StringConvert.h>

#include <cctype>
#include <stdexcept>

namespace test {
namespace {

using Node = BooleanExp::Node;
using Group = BooleanExp::Group;

class Builder
{
public:
    explicit Builder(std::string_view notation) : rest_(notation) {}

    void readOperands(Group& group)
    {
        if (peek() == '\0' || peek() == ')')
            return;
        group.first = readOperand();
        while (peek() == '&' || peek() == '|') {
            const auto conjunction = take() == '&' ? Group::And : Group::Or;
            group.conjoinedTerms.push_back({readOperand(), conjunction});
        }
    }

    char peek()
    {
        while (!rest_.empty() && rest_.front() == ' ')
            rest_.remove_prefix(1);
        return rest_.empty() ? '\0' : rest_.front();
    }

private:
    char take()
    {
        const char c = peek();
        rest_.remove_prefix(1);
        return c;
    }

    std::unique_ptr<Node> readOperand()
    {
        const bool negated = peek() == '!';
        if (negated)
            take();
        std::unique_ptr<Node> operand = readPlainOperand();
        if (operand)
            operand->negated = negated;
        return operand;
    }

    std::unique_ptr<Node> readPlainOperand()
    {
        const char c = take();
        if (c == '_')
            return nullptr;
        if (c == '?')
            return std::make_unique<UnknownNode>();
        if (c == '(') {
            auto group = std::make_unique<Group>();
            readOperands(*group);
            take();
            return group;
        }
        std::u32string text(1, static_cast<char32_t>(c));
        while (!rest_.empty() && std::isalnum(static_cast<unsigned char>(rest_.front())))
            text.push_back(static_cast<char32_t>(take()));
        return std::make_unique<BooleanExp::Term>(text);
    }

    std::string_view rest_;
};

std::string describeNode(const Node* node)
{
    if (node == nullptr)
        return "_";
    const std::string sign = node->negated ? "!" : "";
    if (const Group* group = node->asGroup())
        return sign + "(" + test::describe(*group) + ")";
    if (const BooleanExp::Term* term = node->asTerm())
        return sign + StringConvert::toStdUtf8String(term->text);
    return sign + "?";
}

}  // namespace

BooleanExp build(std::string_view notation)
{
    BooleanExp expression;
    expression.root = std::make_unique<Group>();
    Builder builder(notation);
    builder.readOperands(*expression.root);
    if (builder.peek() != '\0')
        throw std::logic_error("wrong notation: " + std::string(notation));
    return expression;
}

std::string describe(const Group& group)
{
    if (!group.first && group.conjoinedTerms.empty())
        return "";
    std::string text = describeNode(group.first.get());
    group.forEachConjoinedTerm([&](const Group::ConjoinedTerm& term) {
        text += (term.conjunction == Group::And ? " & " : " | ") + describeNode(term.expression.get());
    });
    return text;
}

std::string describe(const BooleanExp& expression)
{
    return expression.root ? describe(*expression.root) : "null";
}

std::string describe(const std::unique_ptr<BooleanExp>& expression)
{
    return expression ? describe(*expression) : "null";
}

}  // namespace test
