#pragma once

/// @file
/// What the module's JSON data files have in common.

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Reporting/ReportPlace.h>
#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/JsonReader.h>

#include <boost/any.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>

namespace Library::detail {

/// The bare name of the filter file.
inline constexpr const char32_t* filterFileName = U"catalog_filters.json";

using JsonNode = json::grammar<char>::value_type;
using JsonArray = json::grammar<char>::array_type;
using JsonObject = json::grammar<char>::object_type;

/// Where a value stands in a document. It is made into a text only when there is a fault to report.
struct MemberPlace
{
    std::string_view parent;  ///< empty for a member of the root
    std::string_view key;

    /// "Manufacturer_7"."Name", with the quotes.
    std::string text() const;
};

/// Ends the reading of a document at a member that is not what it has to be.
struct WrongMember
{
    std::string member;
    DataFileValue expected;
};

/// What a fault report says that a value of this type should have been.
template <typename Value>
constexpr DataFileValue expectedValue()
{
    if constexpr (std::is_same_v<Value, JsonObject>)
        return DataFileValue::Object;
    else if constexpr (std::is_same_v<Value, JsonArray>)
        return DataFileValue::List;
    else if constexpr (std::is_same_v<Value, std::string>)
        return DataFileValue::Text;
    else if constexpr (std::is_same_v<Value, bool>)
        return DataFileValue::Boolean;
    else {
        static_assert(std::is_same_v<Value, int>);
        return DataFileValue::Integer;
    }
}

/// The value that `node` holds; throws WrongMember when it is not a `Value`.
template <typename Value>
const Value& valueOf(const JsonNode& node, const MemberPlace& place)
{
    const Value* const value = boost::any_cast<Value>(node.get());
    if (value == nullptr)
        throw WrongMember{place.text(), expectedValue<Value>()};
    return *value;
}

/// The value of the member that `place` names; null without one. Throws WrongMember when it is not a `Value`.
template <typename Value>
const Value* findMember(const JsonObject& object, const MemberPlace& place)
{
    const auto found = object.find(std::string(place.key));
    return found == object.end() ? nullptr : &valueOf<Value>(found->second, place);
}

/// Frees the parts of a document one after the other, each as soon as it has been read: it is still in the processor's
/// caches then, and what is made of the next part takes its memory.
class PartsRead
{
public:
    /// Leaves `part` empty. For parts of some dozens of values, such as a card.
    void free(JsonNode& part);

private:
    std::size_t freed_ = 0;
};

/// Reads the document in the file at `path` and hands its root to `readRoot`, which may take it apart and may throw
/// WrongMember. Throws nothing but `std::bad_alloc` and whatever else `readRoot` throws.
DataFileResult readDataFile(const fileString& path, const std::function<void(JsonObject& root)>& readRoot);

/// Replaces the file at `path` with the document that `document` makes, completely or not at all, and gives
/// everyone full access to it. In a folder where nothing can be replaced, the text goes into the file that is there;
/// readDataFile() puts the old one back where this did not end. `document` may throw std::out_of_range for a number of
/// more than 32 bits. May throw `std::bad_alloc`, which leaves the file as it was.
DataFileResult writeDataFile(const fileString& path, const std::function<json_writer::Object()>& document);

/// Tells the user that the file at `path` cannot be written, on behalf of `place`.
void reportUnwritable(const fileString& path, const Velk::ReportPlace& place);

}  // namespace Library::detail
