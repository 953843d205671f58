#pragma once

#include <VelkLibrary/Export.h>

#include <boost/any.hpp>

#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

/// Reads JSON text into a tree. Every node is a shared `boost::any` that holds exactly one of
///
/// | JSON                                     | held type                                                          |
/// |------------------------------------------|--------------------------------------------------------------------|
/// | object                                   | `std::multimap<std::string, std::shared_ptr<boost::any>>`          |
/// | array                                    | `std::deque<std::shared_ptr<boost::any>>`, in document order       |
/// | string                                   | `std::string`, UTF-8, escapes decoded                              |
/// | number without decimal point or exponent | `int`, 32 bits                                                     |
/// | other number                             | `double`                                                           |
/// | true, false                              | `bool`                                                             |
/// | null                                     | nothing: an empty `boost::any`                                     |
///
/// Take values out with `boost::any_cast` to exactly these types; it throws `boost::bad_any_cast` for
/// any other. Members that share a key are all kept and come out of the multimap in the reverse of their
/// order in the text.
namespace json {

/// Brackets within brackets that are read; a text that nests deeper is none.
inline constexpr int deepestLevel = 512;

/// The root of the tree of `text`; a root that holds nothing when `text` is not one JSON value with
/// nothing but white space around it. Never throws but for memory. Any thread.
///
/// More than JSON is read: numbers with a leading "+", with leading zeros, with nothing before or nothing
/// behind the decimal point; control characters in strings; every character that is white space in C
/// between tokens. An integer beyond 32 bits makes the text unreadable; a real number beyond the range of
/// `double` is infinite. A "\u" escape gives the UTF-8 form of its own value, so a surrogate pair becomes
/// two sequences of three bytes. Bytes that are not UTF-8 stay as they are.
VELKLIBRARY_EXPORT std::shared_ptr<boost::any> read(std::string_view text);

/// The same for bytes between two iterators, such as those of a vector.
template <std::contiguous_iterator Iterator>
std::shared_ptr<boost::any> read(Iterator first, Iterator last)
{
    static_assert(sizeof(*first) == 1);
    const auto size = static_cast<std::size_t>(last - first);
    return read(std::string_view(reinterpret_cast<const char*>(std::to_address(first)), size));
}

/// The grammar of JSON over characters; there is the one over `char`.
template <typename Character>
class grammar;

/// Parses a JSON value onto a stack of values, by the actions below. What read() does the work with.
///
/// The stack holds values as read() returns them and, while something is open, the markers and pairs
/// of this class. Not synchronised; grammars with stacks of their own are independent of each other.
template <>
class VELKLIBRARY_EXPORT grammar<char>
{
public:
    using value_type = std::shared_ptr<boost::any>;              ///< a node of the tree
    using array_type = std::deque<value_type>;                   ///< what an array's node holds
    using object_type = std::multimap<std::string, value_type>;  ///< what an object's node holds
    using stack_type = std::deque<value_type>;                   ///< what the actions work on

    /// Stands on the stack where an array began.
    struct VELKLIBRARY_EXPORT array_delimiter
    {};
    /// Stands on the stack where an object began.
    struct VELKLIBRARY_EXPORT object_delimiter
    {};
    /// Stands on the stack for a member of an object that is still open.
    using pair_type = std::pair<std::string, value_type>;

    /// Nodes of keys and pairs that have left the stack, to stand on it again: most of the time that a
    /// document takes goes into allocations, and without these nearly half of them would be for keys.
    struct VELKLIBRARY_EXPORT spare_nodes
    {
        stack_type strings;  ///< each holds a string
        stack_type pairs;    ///< each holds a pair
    };

    /// What all actions have: the stack that they work on, and perhaps spare nodes that they share. Both
    /// must outlive them.
    class VELKLIBRARY_EXPORT action
    {
    public:
        /// Works on `values`.
        explicit action(stack_type& values, spare_nodes* spares = nullptr) noexcept : values_(&values), spares_(spares)
        {}

    protected:
        stack_type* values_;   ///< the stack
        spare_nodes* spares_;  ///< null when nodes are not used again
    };

    /// A string: pushes the decoded text of the token between `first` and `last`, quotes included.
    struct VELKLIBRARY_EXPORT push_string : action
    {
        using action::action;
        void operator()(const char* first, const char* last) const;
    };
    /// An integer: pushes it.
    struct VELKLIBRARY_EXPORT push_int : action
    {
        using action::action;
        void operator()(int value) const;
    };
    /// A real number: pushes it.
    struct VELKLIBRARY_EXPORT push_double : action
    {
        using action::action;
        void operator()(double value) const;
    };
    /// "true" or "false": pushes true when the token begins with "t".
    struct VELKLIBRARY_EXPORT push_boolean : action
    {
        using action::action;
        void operator()(const char* first, const char* last) const;
    };
    /// "null": pushes a node that holds nothing.
    struct VELKLIBRARY_EXPORT push_null : action
    {
        using action::action;
        void operator()(const char* first, const char* last) const;
    };
    /// "[": pushes an array_delimiter.
    struct VELKLIBRARY_EXPORT begin_array : action
    {
        using action::action;
        void operator()(char bracket) const;
    };
    /// "]": replaces what lies above the last array_delimiter, and this, by an array of it.
    struct VELKLIBRARY_EXPORT end_array : action
    {
        using action::action;
        void operator()(char bracket) const;
    };
    /// "{": pushes an object_delimiter.
    struct VELKLIBRARY_EXPORT begin_object : action
    {
        using action::action;
        void operator()(char bracket) const;
    };
    /// A member's value was pushed: replaces it and the key below it by their pair.
    struct VELKLIBRARY_EXPORT create_pair : action
    {
        using action::action;
        void operator()(const char* first, const char* last) const;
    };
    /// "}": replaces the pairs above the last object_delimiter, and this, by an object of them. The last
    /// pair is inserted first.
    struct VELKLIBRARY_EXPORT end_object : action
    {
        using action::action;
        void operator()(char bracket) const;
    };

    /// Parses onto `values`, which must outlive the grammar.
    explicit grammar(stack_type& values) noexcept : values_(&values) {}

    /// Parses one value from `first` on; white space in front of tokens is skipped. True when there was
    /// one; `first` is then behind it and the value on the stack. Otherwise the stack may hold the pieces
    /// of one.
    bool parse(const char*& first, const char* last) const;

private:
    template <typename Scanner>
    struct definition;

    stack_type* values_;
};

}  // namespace json
