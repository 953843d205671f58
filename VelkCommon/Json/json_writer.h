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
/// Members stand in the order in which they were added, and a key that is added twice stands there
/// twice. Narrow texts are UTF-8 and may hold any byte: control characters, zero among them, are escaped,
/// and what is no UTF-8 becomes U+FFFD (one for each maximal ill-formed sequence), so that every JSON
/// reader takes the document. One exception keeps texts that readers of this library have read: the two
/// three-byte forms of a surrogate pair are written as its two escapes.
///
/// Objects and arrays are plain values; copies share nothing. Not synchronised.
namespace json_writer {

/// Brackets within brackets that are written; what nests deeper, few readers would read.
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
    /// `other` is empty afterwards.
    Object(Object&& other) noexcept;
    /// Takes over a copy.
    Object& operator=(const Object& other);
    /// `other` may hold anything afterwards.
    Object& operator=(Object&& other) noexcept;
    ~Object();

    /// Adds a text.
    void add_element(const std::string& key, const std::string& value);
    /// The same; without it a literal would become `true`.
    void add_element(const std::string& key, const char* value);
    /// Adds a text, see StringConvert::toStdUtf8String() for what is no Unicode.
    /// @{
    void add_element(const std::string& key, const std::u32string& value);
    void add_element(const std::string& key, const char32_t* value);
    /// @}
    /// Adds true or false.
    void add_element(const std::string& key, bool value);
    /// Adds a number.
    void add_element(const std::string& key, int value);
    /// Adds a number that has 32 bits; throws std::out_of_range for others, which the readers of this
    /// library's documents refuse.
    void add_element(const std::string& key, long value);
    /// Adds a number; read again it is the same. Throws std::domain_error for infinities and for what is
    /// not a number: JSON has none.
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
    /// `other` is empty afterwards.
    Array(Array&& other) noexcept;
    /// Takes over a copy.
    Array& operator=(const Array& other);
    /// `other` may hold anything afterwards.
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
    std::variant<bool, int, double, std::string, Object, Array> value;  ///< what it is
};

/// One member of an object.
struct Member
{
    std::string key;  ///< UTF-8
    Value value;      ///< what it is
};

/// The text of a document: members and elements on lines of their own, indented by their depth, with a
/// line break at the end. Throws std::length_error beyond deepestLevel.
VELKCOMMON_EXPORT std::string to_text(const Object& root);

/// Writes the document to a file and replaces one that is there, whole or not at all: a crash or a full
/// disk leaves the old one. The path is UTF-8. Throws std::runtime_error when the file cannot be
/// written, and what to_text() throws.
VELKCOMMON_EXPORT void write_file(const std::string& utf8Path, const Object& root);

}  // namespace json_writer
