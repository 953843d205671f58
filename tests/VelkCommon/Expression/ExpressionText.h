#pragma once

#include <VelkCommon/Expression/BooleanExp.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// Expression trees as short texts, so that a test reads and compares them as one line:
///
///     a & !(b | c)    a group that holds a, And, and a negated group
///     _               a null pointer
///     ?               a node that is neither term nor group
///     ()              a group without operands
namespace test {

/// A node that is neither term nor group; counts its destructions.
class UnknownNode : public BooleanExp::Node
{
public:
    explicit UnknownNode(std::size_t* destroyed = nullptr) : destroyed_(destroyed) {}
    UnknownNode(const UnknownNode&) = delete;
    UnknownNode& operator=(const UnknownNode&) = delete;
    ~UnknownNode() override
    {
        if (destroyed_ != nullptr)
            ++*destroyed_;
    }

private:
    std::size_t* destroyed_;
};

/// The expression whose root group has the operands that `notation` lists.
BooleanExp build(std::string_view notation);

/// The reverse of build(): the operands of a group, without parentheses around the whole.
std::string describe(const BooleanExp::Group& group);
/// The same for the root; "null" when there is none.
std::string describe(const BooleanExp& expression);
std::string describe(const std::unique_ptr<BooleanExp>& expression);

}  // namespace test
