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

/// Reads JSON text into a tree. Every node is a shared `boost::any` that holds exactly one of these:
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

/// How deep brackets may be nested; a text that nests them deeper is refused as if it were not JSON.
inline constexpr int deepestLevel = 512;

/// The root of the tree of `text`. It holds nothing unless `text` is one JSON value with nothing but white
/// space around it. Throws nothing but `std::bad_alloc`. Any thread.
///
/// More than JSON is read: numbers with a leading "+", with leading zeros, with no digits before or none after
/// the decimal point; control characters in strings; between tokens, every character that C counts as white
/// space. An integer beyond 32 bits makes the text unreadable; a real number beyond the range of `double` is
/// infinite. A "\u" escape gives the UTF-8 form of its own value, so a surrogate pair becomes two sequences of
/// three bytes. Bytes that are not UTF-8 stay as they are.
VELKLIBRARY_EXPORT std::shared_ptr<boost::any> read(std::string_view text);

/// Does the same for the bytes between two iterators, such as those of a vector.
template <std::contiguous_iterator Iterator>
std::shared_ptr<boost::any> read(Iterator first, Iterator last)
{
    static_assert(sizeof(*first) == 1);
    const auto size = static_cast<std::size_t>(last - first);
    return read(std::string_view(reinterpret_cast<const char*>(std::to_address(first)), size));
}

/// The grammar of JSON. It exists for `char` only.
template <typename Character>
class grammar;

/// Parses a JSON value onto a stack of values by means of the actions below. read() does its work with it.
///
/// The stack holds values as read() returns them and, while an array or object is open, the markers and pairs
/// of this class. Not synchronised; grammars that work on different stacks are independent of each other.
template <>
class VELKLIBRARY_EXPORT grammar<char>
{
public:
    using value_type = std::shared_ptr<boost::any>;              ///< a node of the tree
    using array_type = std::deque<value_type>;                   ///< what an array's node holds
    using object_type = std::multimap<std::string, value_type>;  ///< what an object's node holds
    using stack_type = std::deque<value_type>;                   ///< what the actions work on

    /// Marks the place on the stack where an array began.
    struct VELKLIBRARY_EXPORT array_delimiter
    {};
    /// Marks the place on the stack where an object began.
    struct VELKLIBRARY_EXPORT object_delimiter
    {};
    /// Stands on the stack for a member of an object that is still open.
    using pair_type = std::pair<std::string, value_type>;

    /// Nodes of keys and pairs that have left the stack and can be used again. Reading a document spends most
    /// of its time on allocations, and without these nearly half of them would be for keys.
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
        /// An action on `values`. Without `spares`, every node is a new one.
        explicit action(stack_type& values, spare_nodes* spares = nullptr) noexcept : values_(&values), spares_(spares)
        {}

    protected:
        stack_type* values_;   ///< the stack
        spare_nodes* spares_;  ///< null when nodes are not used again
    };

    /// The action for a string.
    struct VELKLIBRARY_EXPORT push_string : action
    {
        using action::action;
        /// Pushes the decoded text of the token from `first` to `last`, which includes the quotes.
        void operator()(const char* first, const char* last) const;
    };
    /// The action for an integer.
    struct VELKLIBRARY_EXPORT push_int : action
    {
        using action::action;
        /// Pushes `value`.
        void operator()(int value) const;
    };
    /// The action for a real number.
    struct VELKLIBRARY_EXPORT push_double : action
    {
        using action::action;
        /// Pushes `value`.
        void operator()(double value) const;
    };
    /// The action for "true" and "false".
    struct VELKLIBRARY_EXPORT push_boolean : action
    {
        using action::action;
        /// Pushes true when the token begins with "t", else false.
        void operator()(const char* first, const char* last) const;
    };
    /// The action for "null".
    struct VELKLIBRARY_EXPORT push_null : action
    {
        using action::action;
        /// Pushes a node that holds nothing.
        void operator()(const char* first, const char* last) const;
    };
    /// The action for "[".
    struct VELKLIBRARY_EXPORT begin_array : action
    {
        using action::action;
        /// Pushes an array_delimiter.
        void operator()(char bracket) const;
    };
    /// The action for "]".
    struct VELKLIBRARY_EXPORT end_array : action
    {
        using action::action;
        /// Replaces the last array_delimiter and everything above it with one array.
        void operator()(char bracket) const;
    };
    /// The action for "{".
    struct VELKLIBRARY_EXPORT begin_object : action
    {
        using action::action;
        /// Pushes an object_delimiter.
        void operator()(char bracket) const;
    };
    /// The action for a member of an object, after its key and its value were pushed.
    struct VELKLIBRARY_EXPORT create_pair : action
    {
        using action::action;
        /// Replaces the value on top and the key below it with their pair.
        void operator()(const char* first, const char* last) const;
    };
    /// The action for "}".
    struct VELKLIBRARY_EXPORT end_object : action
    {
        using action::action;
        /// Replaces the last object_delimiter and the pairs above it with one object, into which the last
        /// pair is inserted first.
        void operator()(char bracket) const;
    };

    /// Parses onto `values`, which must outlive the grammar.
    explicit grammar(stack_type& values) noexcept : values_(&values) {}

    /// Parses one value from `first` on; white space in front of tokens is skipped. True when there was a
    /// value: `first` is then behind it, and it is on the stack. Otherwise the stack may hold pieces of a
    /// value.
    bool parse(const char*& first, const char* last) const;

private:
    template <typename Scanner>
    struct definition;

    stack_type* values_;
};

}  // namespace json
