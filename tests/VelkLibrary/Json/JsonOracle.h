#pragma once

/// @file
/// Qt's reader of JSON as the judge of ours. It accepts less (no "+1", no ".5", no bytes that are not
/// UTF-8) but for integers beyond 32 bits, deeper nesting and a byte order mark.

#include <VelkCommon/Text/detail/Utf8.h>
#include <VelkLibrary/JsonReader.h>

#include "JsonTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace test {

/// Our text as Qt has it: surrogates, which we keep apart, one unit each.
inline QString asUtf16(const std::string& text)
{
    QString result;
    for (std::string_view rest = text; !rest.empty();) {
        const auto character = Velk::detail::decodeUtf8(rest, Velk::detail::Surrogates::allowed);
        const char32_t value = character.value;
        if (value < 0x10000) {
            result += QChar(static_cast<ushort>(value));
        } else {
            result += QChar(QChar::highSurrogate(value));
            result += QChar(QChar::lowSurrogate(value));
        }
        rest.remove_prefix(character.length);
    }
    return result;
}

bool agrees(const JsonNode& ours, const QJsonValue& theirs);

inline bool agrees(const JsonArray& ours, const QJsonArray& theirs)
{
    if (static_cast<std::size_t>(theirs.size()) != ours.size())
        return false;
    for (int i = 0; i < theirs.size(); ++i)
        if (!agrees(ours[static_cast<std::size_t>(i)], theirs[i]))
            return false;
    return true;
}

/// Of equal keys, Qt keeps one.
inline bool agrees(const JsonObject& ours, const QJsonObject& theirs)
{
    std::map<QString, bool> found;
    for (const auto& [key, value] : ours) {
        const QString name = asUtf16(key);
        if (!theirs.contains(name))
            return false;
        found[name] = found[name] || agrees(value, theirs[name]);
    }
    for (const auto& [name, agreed] : found)
        if (!agreed)
            return false;
    return found.size() == static_cast<std::size_t>(theirs.size());
}

inline bool agrees(const JsonNode& ours, const QJsonValue& theirs)
{
    const boost::any& value = *ours;
    if (value.empty())
        return theirs.isNull();
    if (const auto* const flag = boost::any_cast<bool>(&value))
        return theirs.isBool() && theirs.toBool() == *flag;
    if (const auto* const number = boost::any_cast<int>(&value))
        return theirs.isDouble() && theirs.toDouble() == *number;
    if (const auto* const number = boost::any_cast<double>(&value))
        return theirs.isDouble() && theirs.toDouble() == *number;
    if (const auto* const text = boost::any_cast<std::string>(&value))
        return theirs.isString() && theirs.toString() == asUtf16(*text);
    if (const auto* const array = boost::any_cast<JsonArray>(&value))
        return theirs.isArray() && agrees(*array, theirs.toArray());
    if (const auto* const object = boost::any_cast<JsonObject>(&value))
        return theirs.isObject() && agrees(*object, theirs.toObject());
    return false;
}

/// A value of Qt's that we have to read as well: no wide number, which may be an integer, and not too deep.
inline bool isReadableHere(const QJsonValue& value, int levels = json::deepestLevel)
{
    if (value.isDouble())
        return std::abs(value.toDouble()) < double{std::numeric_limits<int>::max()};
    if (levels == 0 && (value.isArray() || value.isObject()))
        return false;
    const auto holdsFor = [levels](const auto& container) {
        for (const auto& element : container)
            if (!isReadableHere(element, levels - 1))
                return false;
        return true;
    };
    return value.isArray() ? holdsFor(value.toArray()) : !value.isObject() || holdsFor(value.toObject());
}

/// What is wrong with our reading of `text`; empty when nothing is.
inline std::string disagreement(const std::string& text)
{
    const JsonNode ours = json::read(text);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    if (error.error != QJsonParseError::NoError || text.starts_with("\xEF\xBB\xBF"))
        return {};
    const QJsonValue theirs = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    if (ours->empty())
        return isReadableHere(theirs) ? "refused" : "";
    return agrees(ours, theirs) ? "" : "read as " + describe(ours);
}

}  // namespace test
