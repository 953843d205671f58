#pragma once

/// @file
/// What the module's JSON data files have in common.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/JsonReader.h>

#include <boost/any.hpp>

#include <cstddef>
#include <memory>
#include <string>

namespace Library::detail {

/// The bare name of the filter file.
inline constexpr const char32_t* filterFileName = U"catalog_filters.json";

using JsonNode = json::grammar<char>::value_type;
using JsonArray = json::grammar<char>::array_type;
using JsonObject = json::grammar<char>::object_type;

/// The root of the document in the file at `path`. Throws std::ios_base::failure when the file cannot be
/// opened or read, and when it is larger than any data file.
JsonNode readJsonFile(const fileString& path);

/// The value that `node` holds; throws boost::bad_any_cast when it is no `Value`.
template <typename Value>
const Value& valueOf(const JsonNode& node)
{
    return boost::any_cast<const Value&>(*node);
}

/// The value of the member `key`; null without one. Throws boost::bad_any_cast when it is no `Value`.
template <typename Value>
const Value* findMember(const JsonObject& object, const std::string& key)
{
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &valueOf<Value>(found->second);
}

/// A file at `path` may be replaced, or there is none. Otherwise the user is told, on behalf of this line of
/// `sourceFile`.
bool isWritableOrReport(const fileString& path, const char* sourceFile, std::size_t line);

/// Tells the user that the file at `path` cannot be written.
void reportUnwritable(const fileString& path, const char* sourceFile, std::size_t line);

}  // namespace Library::detail
