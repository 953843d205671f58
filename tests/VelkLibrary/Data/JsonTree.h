#pragma once

/// @file
/// Trees of JSON values as texts, which are easy to compare and print.

#include <VelkLibrary/JsonReader.h>

#include <cstdio>
#include <string>

namespace test {

using JsonNode = json::grammar<char>::value_type;
using JsonArray = json::grammar<char>::array_type;
using JsonObject = json::grammar<char>::object_type;

/// `text` in quotes, with every byte that is not printable ASCII written as "<c3>".
inline std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        char hexadecimal[8];
        std::snprintf(hexadecimal, sizeof hexadecimal, "<%02x>", byte);
        if (byte >= 0x20 && byte < 0x7F)
            result += character;
        else
            result += hexadecimal;
    }
    return result + "'";
}

/// The tree as one text: "{'a': 1, 'b': [2.5d, true, nothing]}"; members in the order of the multimap.
inline std::string describe(const JsonNode& node)
{
    const boost::any& value = *node;
    if (value.empty())
        return "nothing";
    if (const auto* const flag = boost::any_cast<bool>(&value))
        return *flag ? "true" : "false";
    if (const auto* const number = boost::any_cast<int>(&value))
        return std::to_string(*number);
    if (const auto* const number = boost::any_cast<double>(&value)) {
        char text[40];
        std::snprintf(text, sizeof text, "%.17gd", *number);
        return text;
    }
    if (const auto* const text = boost::any_cast<std::string>(&value))
        return quoted(*text);
    std::string parts;
    if (const auto* const array = boost::any_cast<JsonArray>(&value)) {
        for (const JsonNode& element : *array)
            parts += (parts.empty() ? "" : ", ") + describe(element);
        return "[" + parts + "]";
    }
    if (const auto* const object = boost::any_cast<JsonObject>(&value)) {
        for (const auto& [key, member] : *object)
            parts += (parts.empty() ? "" : ", ") + quoted(key) + ": " + describe(member);
        return "{" + parts + "}";
    }
    return "no value of a document";
}

}  // namespace test
