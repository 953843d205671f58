#pragma once

/// @file
/// A strict reader of JSON that judges ours. It accepts less (no "+1", no ".5", no control characters and no
/// bytes that are not UTF-8 in strings), except that it takes integers beyond 32 bits and deeper nesting.

#include <VelkCommon/detail/Utf8.h>
#include <VelkLibrary/JsonReader.h>

#include "JsonTree.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>

namespace test {

/// `text` with each surrogate pair as the one character that other readers make of it; ours keeps the two
/// apart.
inline std::string joinedSurrogates(const std::string& text)
{
    std::string result;
    char32_t high = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const auto character = Velk::detail::decodeUtf8(rest, Velk::detail::Surrogates::allowed);
        rest.remove_prefix(character.length);
        if (character.value >= 0xD800 && character.value < 0xDC00) {
            high = character.value;
        } else if (high != 0) {
            Velk::detail::appendUtf8(result, 0x10000 + ((high - 0xD800) << 10) + (character.value - 0xDC00));
            high = 0;
        } else {
            Velk::detail::appendUtf8(result, character.value);
        }
    }
    return result;
}

bool agrees(const JsonNode& ours, const nlohmann::json& theirs);

inline bool agrees(const JsonArray& ours, const nlohmann::json& theirs)
{
    if (!theirs.is_array() || theirs.size() != ours.size())
        return false;
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (!agrees(ours[i], theirs[i]))
            return false;
    return true;
}

/// Of equal keys, the other reader keeps the last, which is our first.
inline bool agrees(const JsonObject& ours, const nlohmann::json& theirs)
{
    if (!theirs.is_object())
        return false;
    std::map<std::string, JsonNode> members;
    for (const auto& [key, value] : ours)
        members.emplace(joinedSurrogates(key), value);
    if (members.size() != theirs.size())
        return false;
    for (const auto& [key, value] : members)
        if (!theirs.contains(key) || !agrees(value, theirs[key]))
            return false;
    return true;
}

inline bool agrees(const JsonNode& ours, const nlohmann::json& theirs)
{
    const boost::any& value = *ours;
    if (value.empty())
        return theirs.is_null();
    if (const auto* const flag = boost::any_cast<bool>(&value))
        return theirs.is_boolean() && theirs.get<bool>() == *flag;
    if (const auto* const number = boost::any_cast<int>(&value))
        return theirs.is_number_integer() && theirs.get<std::int64_t>() == *number;
    if (const auto* const number = boost::any_cast<double>(&value))
        return theirs.is_number_float() && theirs.get<double>() == *number;
    if (const auto* const text = boost::any_cast<std::string>(&value))
        return theirs.is_string() && theirs.get_ref<const std::string&>() == joinedSurrogates(*text);
    if (const auto* const array = boost::any_cast<JsonArray>(&value))
        return agrees(*array, theirs);
    if (const auto* const object = boost::any_cast<JsonObject>(&value))
        return agrees(*object, theirs);
    return false;
}

/// Whether we have to read a value as well, because it holds no wide integer and is not too deep. The last of
/// equal keys hides the others, so a document with a hidden wide integer may be refused.
inline bool isReadableHere(const nlohmann::json& value, int levels = json::deepestLevel)
{
    if (value.is_number_unsigned())
        return value.get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int32_t>::max()};
    if (value.is_number_integer())
        return value.get<std::int64_t>() >= std::numeric_limits<std::int32_t>::min();
    if (!value.is_structured())
        return true;
    if (levels == 0)
        return false;
    for (const auto& element : value)
        if (!isReadableHere(element, levels - 1))
            return false;
    return true;
}

/// How deep the brackets in `text` are nested, those in strings included: an upper bound for the other reader,
/// whose tree is released by recursion.
inline bool isShallow(const std::string& text)
{
    int level = 0;
    int deepest = 0;
    for (const char character : text) {
        level += character == '[' || character == '{' ? 1 : 0;
        level -= character == ']' || character == '}' ? 1 : 0;
        deepest = std::max(deepest, level);
    }
    return deepest <= json::deepestLevel;
}

/// The other reader's value of `text`; a discarded value when it refuses the text.
inline nlohmann::json readByOther(const std::string& text)
{
    // It accepts a byte order mark and takes a zero byte for the end; neither belongs in a document.
    if (text.starts_with("\xEF\xBB\xBF") || text.find('\0') != std::string::npos)
        return nlohmann::json(nlohmann::json::value_t::discarded);
    return nlohmann::json::parse(text, nullptr, false);
}

/// What is wrong with our reading of `text`; empty when nothing is wrong. `keysDiffer`: no object has a key
/// twice.
inline std::string disagreement(const std::string& text, bool keysDiffer)
{
    const JsonNode ours = json::read(text);
    const nlohmann::json theirs = readByOther(text);
    if (theirs.is_discarded() || theirs.is_null())
        return {};
    if (ours->empty())
        return keysDiffer && isReadableHere(theirs) ? "refused" : "";
    return agrees(ours, theirs) ? "" : "read as " + describe(ours);
}

}  // namespace test
