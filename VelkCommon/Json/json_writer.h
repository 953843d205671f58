#pragma once

#include <VelkCommon/Export.h>

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// Writes JSON documents: build an Object, then write_file().
///
///     json_writer::Object root;
///     root.add_element("Version", "42");
///     json_writer::write_file("/home/ann/data.json", root);
///
/// Members are written in the order in which they were added, and a key that is added twice is written
/// twice. Narrow texts are UTF-8 and may hold any byte: control characters, including zero, are escaped,
/// and bytes that are not UTF-8 become U+FFFD (one for each maximal ill-formed sequence), so that every JSON
/// reader accepts the document. There is one exception, for the sake of texts that this library's readers have
/// read: a surrogate pair in two three-byte forms is written as its two escapes.
///
/// Objects and arrays are plain values; copies share nothing. Not synchronised.
namespace json_writer {

/// The deepest nesting of brackets that is written; few readers would accept more.
inline constexpr int deepestLevel = 512;

class Array;
struct Member;
struct Value;

/// An ordered sequence of members.
class VELKCOMMON_EXPORT Object
{
public:
    /// Empty.
    Object() noexcept;
    /// A copy shares nothing.
    Object(const Object& other);
    /// Takes the members of `other`, which is empty afterwards.
    Object(Object&& other) noexcept;
    /// Replaces the members by copies of those of `other`.
    Object& operator=(const Object& other);
    /// Takes the members of `other`, which may hold anything afterwards.
    Object& operator=(Object&& other) noexcept;
    ~Object();

    /// Adds a text.
    void add_element(const std::string& key, const std::string& value);
    /// Adds a text. Without this overload a literal would become `true`.
    void add_element(const std::string& key, const char* value);
    /// Adds a text; StringConvert::toStdUtf8String() says what becomes of values that are not Unicode.
    /// @{
    void add_element(const std::string& key, const std::u32string& value);
    void add_element(const std::string& key, const char32_t* value);
    /// @}
    /// Adds true or false.
    void add_element(const std::string& key, bool value);
    /// Adds a number.
    void add_element(const std::string& key, int value);
    /// Adds a number that fits 32 bits. Throws std::out_of_range for any other, because the readers of this
    /// library's documents refuse it.
    void add_element(const std::string& key, long value);
    /// Adds a number so that reading it gives the same value. Throws std::domain_error for infinities and NaN,
    /// which JSON does not have.
    void add_element(const std::string& key, double value);
    /// Adds a copy of an object.
    void add_element(const std::string& key, const Object& value);
    /// Adds an object.
    void add_element(const std::string& key, Object&& value);
    /// Adds a copy of an array.
    void add_element(const std::string& key, const Array& value);
    /// Adds an array.
    void add_element(const std::string& key, Array&& value);

    /// The members in order.
    const std::vector<Member>& members() const noexcept { return members_; }

private:
    std::vector<Member> members_;
};

/// An ordered sequence of values.
class VELKCOMMON_EXPORT Array
{
public:
    /// Empty.
    Array() noexcept;
    /// A copy shares nothing.
    Array(const Array& other);
    /// Takes the elements of `other`, which is empty afterwards.
    Array(Array&& other) noexcept;
    /// Replaces the elements by copies of those of `other`.
    Array& operator=(const Array& other);
    /// Takes the elements of `other`, which may hold anything afterwards.
    Array& operator=(Array&& other) noexcept;
    ~Array();

    /// Adds a text.
    void add_element(const std::string& value);
    /// Adds a copy of an object.
    void add_element(const Object& value);
    /// Adds a copy of an array.
    void add_element(const Array& value);

    /// The elements in order.
    const std::vector<Value>& elements() const noexcept { return elements_; }

private:
    std::vector<Value> elements_;
};

/// One value of a document.
struct Value
{
    std::variant<bool, int, double, std::string, Object, Array> value;  ///< the value itself
};

/// One member of an object.
struct Member
{
    std::string key;  ///< UTF-8
    Value value;      ///< the member's value
};

/// The text of a document: members and elements on lines of their own, indented by their depth, with a
/// line break at the end. Throws std::length_error beyond deepestLevel.
VELKCOMMON_EXPORT std::string to_text(const Object& root);

/// Writes the document to a file and replaces an existing one whole or not at all: after a crash or on a full
/// disk the old one is still there. The path is UTF-8. Throws std::runtime_error when the file cannot be
/// written, and the exceptions of to_text().
VELKCOMMON_EXPORT void write_file(const std::string& utf8Path, const Object& root);

}  // namespace json_writer
