#include "host/command/TourManufacturers.h"

#include "host/catalog/SampleLibrary.h"
#include "host/installation/Manufacturers.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/InstallHost.h"
#include "host/support/TextTable.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <algorithm>
#include <map>

namespace VelkHost {
namespace {

constexpr const char32_t* defaultText = U"Ask the provider of the library.";
constexpr const char32_t* dataFile = U"manufacturer_data.json";

/// A library that names nobody stands for itself.
std::vector<FurnitureManufacturer> manufacturersOf(const fileString& library)
{
    std::vector<FurnitureManufacturer> manufacturers = readFurnitureManufacturers(library);
    if (manufacturers.empty())
        manufacturers.push_back({library.stem().utf8(), {}, 0, {}, {}});
    return manufacturers;
}

/// The manufacturers of all libraries; one that several libraries name counts once.
std::vector<FurnitureManufacturer> manufacturersOf(const std::vector<fileString>& libraries)
{
    std::map<std::string, FurnitureManufacturer> all;
    for (const fileString& library : libraries)
        for (const FurnitureManufacturer& manufacturer : manufacturersOf(library)) {
            const auto [known, fresh] = all.emplace(manufacturer.name, manufacturer);
            if (!fresh)
                known->second.items += manufacturer.items;
        }
    std::vector<FurnitureManufacturer> manufacturers;
    manufacturers.reserve(all.size());
    for (auto& [name, manufacturer] : all)
        manufacturers.push_back(std::move(manufacturer));
    return manufacturers;
}

/// The sample names no manufacturers, so it gets these.
std::vector<FurnitureManufacturer> sampleManufacturers()
{
    const std::vector<Item> items = sampleLibrary({}).items;
    std::vector<FurnitureManufacturer> manufacturers;
    for (const char* name : {"Sample doors", "Sample chairs", "Sample tables"}) {
        const std::size_t first = manufacturers.size() * 8;
        manufacturers.push_back(
            {name, "", 8 - manufacturers.size(), items[first].thumbnail, items[first + 1].thumbnail});
    }
    return manufacturers;
}

std::u32string wide(const std::string& text)
{
    return StringConvert::toUnicodeFromUtf8(text);
}

}  // namespace

TourManufacturers::TourManufacturers(const std::vector<fileString>& libraries, const fileString& home,
                                     const fileString& content)
    : home_(home),
      content_(content),
      manufacturers_(libraries.empty() ? sampleManufacturers() : manufacturersOf(libraries))
{}

void TourManufacturers::build(Output& output) const
{
    makeFolder(content_ / U"logos");
    ManufacturerFile held;
    held.defaultText = defaultText;
    std::size_t logos = 0;
    for (std::size_t i = 0; i < manufacturers_.size(); ++i) {
        const FurnitureManufacturer& manufacturer = manufacturers_[i];
        const bool hasLogo = !manufacturer.icon.empty();
        held.cards.try_emplace(static_cast<long>(i + 1), wide(manufacturer.name), wide(manufacturer.url), U"default",
                               U"default", hasLogo ? fileString(logoName(i)) : fileString(), U"default", false,
                               Library::getTimeNow());
        if (hasLogo) {
            writeLogo(i, manufacturer.icon);
            ++logos;
        }
    }
    installHost(home_);
    saveManufacturers(held, {});
    copyData();
    output.write("  manufacturer_data.json: " + counted(held.cards.size(), "manufacturer") + ", " +
                 counted(logos, "logo") + "\n");
}

void TourManufacturers::change(Output& output) const
{
    const std::size_t manufacturer = static_cast<std::size_t>(busiest() - 1);
    copyData();
    if (manufacturers_[manufacturer].icon.empty())
        return;
    writeLogo(manufacturer, manufacturers_[manufacturer].otherIcon);
    output.write("  " + logoName(manufacturer) + ": another picture\n");
}

long TourManufacturers::busiest() const
{
    const auto busier = [](const FurnitureManufacturer& left, const FurnitureManufacturer& right) {
        return left.items < right.items;
    };
    return static_cast<long>(std::max_element(manufacturers_.begin(), manufacturers_.end(), busier) -
                             manufacturers_.begin()) +
           1;
}

std::string TourManufacturers::logoName(std::size_t manufacturer) const
{
    return "manufacturer-" + std::to_string(manufacturer + 1) + ".png";
}

void TourManufacturers::writeLogo(std::size_t manufacturer, const std::string& image) const
{
    writeWhole(content_ / U"logos" / fileString(logoName(manufacturer)), image);
}

void TourManufacturers::copyData() const
{
    const fileString source = home_ / U"manufacturer-data" / fileString(std::u32string(dataFile));
    if (!FileUtils::copyFile(source, content_ / fileString(std::u32string(dataFile)), true))
        throw FileError(source, "cannot be copied");
}

}  // namespace VelkHost
