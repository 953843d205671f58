#pragma once

/// @file
/// Cards as texts, and data files of manufacturers.

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "support/TestHost.h"

#include <map>
#include <string>

namespace test {

using Cards = std::map<long, Manufacturer>;
using Time = boost::posix_time::ptime;

inline Time timeOf(const std::string& text)
{
    return Library::fromString<Time>(text);
}

/// A card changed at the beginning of 2026, with the given name and logo.
inline Manufacturer makeCard(const std::u32string& name, const std::u32string& logo = U"",
                             const std::string& time = "20260101T000000")
{
    return Manufacturer(name, U"https://" + name, U"phone", U"fax", logo, U"e-mail", false, timeOf(time));
}

/// "Acme|https://acme|phone|fax|acme.png|e-mail|false|20260101T000000".
inline std::string describe(const Manufacturer& card)
{
    const auto utf8 = [](const std::u32string& text) { return StringConvert::toStdUtf8String(text) + "|"; };
    return utf8(card.getManufacturerName()) + utf8(card.getManufacturerUrl()) +
           utf8(card.getManufacturerPhoneNumber(false)) + utf8(card.getManufacturerFaxNumber(false)) +
           card.getManufacturerLogoName().utf8() + "|" + utf8(card.getManufacturerEmail(false)) +
           (card.isDeleted() ? "true|" : "false|") + Library::toString(card.getLastModified());
}

/// "7 Acme, 9 Belt": ids and names of all cards.
inline std::string namesOf(const ManufacturerManager& manager)
{
    std::string names;
    for (const auto& [id, name] : manager.getIdNameMap())
        names += (names.empty() ? "" : ", ") + std::to_string(id) + " " + StringConvert::toStdUtf8String(name);
    return names;
}

/// Each test begins and ends without a manager.
class ManufacturerTest : public TestHost
{
protected:
    ManufacturerTest() { ManufacturerManager::cleanup(); }
    ~ManufacturerTest() override { ManufacturerManager::cleanup(); }

    static ManufacturerManager& manager() { return ManufacturerManager::getManufacturerManager(); }
    static fileString dataFolder() { return PathUtils::getObject().getManufacturerDataPath(); }
    static fileString dataFile() { return dataFolder() / std::u32string(U"manufacturer_data.json"); }

    /// The manager of a data file with this text.
    static ManufacturerManager& managerOf(const std::string& text)
    {
        writeFile(dataFile(), text);
        ManufacturerManager::cleanup();
        return manager();
    }
};

}  // namespace test
