#include <VelkCommon/Json/json_writer.h>

#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Text/Hexadecimal.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/Utf16.h>
#include <VelkCommon/detail/Utf8.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace json_writer {
namespace {

using Velk::detail::Surrogates;

constexpr std::size_t indentation = 4;

// ---- Texts ---------------------------------------------------------------------------------------

// Whether a byte of a text stands for itself: ASCII without quote, backslash and control characters.
constexpr auto plainBytes = [] {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < 0x80; ++byte)
        plain[byte] = byte != '"' && byte != '\\';
    return plain;
}();

std::size_t plainLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && plainBytes[static_cast<unsigned char>(text[length])])
        ++length;
    return length;
}

void appendUnit(std::string& out, unsigned unit)
{
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += Velk::Hexadecimal::smallDigits[(unit >> shift) & 0xF];
}

// Appends a quote, backslash or control character as its escape.
void appendAscii(std::string& out, char character)
{
    switch (character) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\b':
            out += "\\b";
            return;
        case '\f':
            out += "\\f";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            appendUnit(out, static_cast<unsigned char>(character));
    }
}

// The surrogate that `text` begins with in its three-byte form, if it is of the given kind.
char32_t surrogateAt(std::string_view text, bool (*isOfKind)(char32_t) noexcept)
{
    if (text.empty())
        return 0;
    const auto decoded = Velk::detail::decodeUtf8(text, Surrogates::allowed);
    return decoded.wellFormed && isOfKind(decoded.value) ? decoded.value : 0;
}

// Appends the surrogate pair that `text` begins with; false when it begins with none.
bool appendSurrogatePair(std::string& out, std::string_view text)
{
    constexpr std::size_t surrogateBytes = 3;
    const char32_t high = surrogateAt(text, Velk::Utf16::isLead);
    const char32_t low = high == 0 ? 0 : surrogateAt(text.substr(surrogateBytes), Velk::Utf16::isTrail);
    if (low == 0)
        return false;
    appendUnit(out, high);
    appendUnit(out, low);
    return true;
}

// Appends the character that `text` begins with; returns how many bytes it has.
std::size_t appendCharacter(std::string& out, std::string_view text)
{
    constexpr std::size_t surrogatePairBytes = 6;
    const auto decoded = Velk::detail::decodeUtf8(text, Surrogates::malformed);
    if (decoded.wellFormed && decoded.length == 1) {
        appendAscii(out, text[0]);
    } else if (decoded.wellFormed) {
        out.append(text.substr(0, decoded.length));
    } else if (appendSurrogatePair(out, text)) {
        return surrogatePairBytes;
    } else {
        Velk::detail::appendUtf8(out, Velk::detail::replacementCharacter);
    }
    return decoded.length;
}

void append(std::string& out, std::string_view text)
{
    out += '"';
    while (!text.empty()) {
        const std::size_t plain = plainLength(text);
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty())
            text.remove_prefix(appendCharacter(out, text));
    }
    out += '"';
}

// ---- Numbers -------------------------------------------------------------------------------------

void append(std::string& out, bool value)
{
    out += value ? "true" : "false";
}

template <typename Number>
std::string_view shortestText(std::array<char, 32>& buffer, Number value)
{
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

void append(std::string& out, int value)
{
    std::array<char, 32> buffer{};
    out.append(shortestText(buffer, value));
}

// Always writes a decimal point or an exponent; without either, the number would be read as an integer.
void append(std::string& out, double value)
{
    std::array<char, 32> buffer{};
    const std::string_view text = shortestText(buffer, value);
    out.append(text);
    if (text.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

// ---- Objects and arrays --------------------------------------------------------------------------

void append(std::string& out, const Value& value, int level);

void beginLine(std::string& out, int level)
{
    out += '\n';
    out.append(static_cast<std::size_t>(level) * indentation, ' ');
}

void appendPart(std::string& out, const Member& member, int level)
{
    append(out, std::string_view(member.key));
    out += ": ";
    append(out, member.value, level);
}

void appendPart(std::string& out, const Value& element, int level)
{
    append(out, element, level);
}

// Appends the parts between two brackets, each on its own line.
template <typename Part>
void appendParts(std::string& out, const std::vector<Part>& parts, char open, char close, int level)
{
    if (level > deepestLevel)
        throw std::length_error("The JSON document nests too deeply.");
    out += open;
    const char* separator = "";
    for (const Part& part : parts) {
        out += separator;
        separator = ",";
        beginLine(out, level);
        appendPart(out, part, level);
    }
    if (!parts.empty())
        beginLine(out, level - 1);
    out += close;
}

// `level` counts the brackets around the value.
void append(std::string& out, const Value& value, int level)
{
    const auto appendAny = [&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, Object>)
            appendParts(out, content.members(), '{', '}', level + 1);
        else if constexpr (std::is_same_v<Content, Array>)
            appendParts(out, content.elements(), '[', ']', level + 1);
        else if constexpr (std::is_same_v<Content, std::string>)
            append(out, std::string_view(content));
        else
            append(out, content);
    };
    std::visit(appendAny, value.value);
}

}  // namespace

// ---- Object --------------------------------------------------------------------------------------

Object::Object() noexcept = default;
Object::Object(const Object& other) = default;
Object::Object(Object&& other) noexcept = default;
Object& Object::operator=(const Object& other) = default;
Object& Object::operator=(Object&& other) noexcept = default;
Object::~Object() = default;

void Object::add_element(const std::string& key, const std::string& value)
{
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, const char* value)
{
    add_element(key, std::string(value));
}

void Object::add_element(const std::string& key, const std::u32string& value)
{
    members_.push_back({key, {StringConvert::toStdUtf8String(value)}});
}

void Object::add_element(const std::string& key, const char32_t* value)
{
    add_element(key, std::u32string(value));
}

void Object::add_element(const std::string& key, bool value)
{
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, int value)
{
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, long value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (value < long{Limits::min()} || value > long{Limits::max()})
        throw std::out_of_range("A number in a JSON document has more than 32 bits.");
    add_element(key, static_cast<int>(value));
}

void Object::add_element(const std::string& key, double value)
{
    if (!std::isfinite(value))
        throw std::domain_error("A number in a JSON document is not finite.");
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, const Object& value)
{
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, Object&& value)
{
    members_.push_back({key, {std::move(value)}});
}

void Object::add_element(const std::string& key, const Array& value)
{
    members_.push_back({key, {value}});
}

void Object::add_element(const std::string& key, Array&& value)
{
    members_.push_back({key, {std::move(value)}});
}

// ---- Array ---------------------------------------------------------------------------------------

Array::Array() noexcept = default;
Array::Array(const Array& other) = default;
Array::Array(Array&& other) noexcept = default;
Array& Array::operator=(const Array& other) = default;
Array& Array::operator=(Array&& other) noexcept = default;
Array::~Array() = default;

void Array::add_element(const std::string& value)
{
    elements_.push_back({value});
}

void Array::add_element(const Object& value)
{
    elements_.push_back({value});
}

void Array::add_element(const Array& value)
{
    elements_.push_back({value});
}

// ---- Documents -----------------------------------------------------------------------------------

std::string to_text(const Object& root)
{
    std::string text;
    appendParts(text, root.members(), '{', '}', 1);
    text += '\n';
    return text;
}

void write_file(const std::string& utf8Path, const Object& root)
{
    const std::string text = to_text(root);
    ReplacementFile file((fileString(utf8Path)));
    if (!file.write(text) || !file.commit())
        throw std::runtime_error("The JSON document cannot be written: " + utf8Path);
}

}  // namespace json_writer
