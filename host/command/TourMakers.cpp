#include "host/command/TourMakers.h"

#include "host/catalog/CatalogError.h"
#include "host/catalog/CatalogFolder.h"
#include "host/catalog/SampleLibrary.h"
#include "host/library/Manufacturers.h"
#include "host/service/WholeFile.h"
#include "host/support/InstallHost.h"
#include "host/support/TextTable.h"

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
std::vector<FurnitureMaker> makersOf(const fileString& library)
{
    std::vector<FurnitureMaker> makers = readFurnitureMakers(library);
    if (makers.empty())
        makers.push_back({library.stem().utf8(), {}, 0, {}, {}});
    return makers;
}

/// Those of all libraries; one who is in several is one.
std::vector<FurnitureMaker> makersOf(const std::vector<fileString>& libraries)
{
    std::map<std::string, FurnitureMaker> all;
    for (const fileString& library : libraries)
        for (const FurnitureMaker& maker : makersOf(library)) {
            const auto [known, fresh] = all.emplace(maker.name, maker);
            if (!fresh)
                known->second.items += maker.items;
        }
    std::vector<FurnitureMaker> makers;
    makers.reserve(all.size());
    for (auto& [name, maker] : all)
        makers.push_back(std::move(maker));
    return makers;
}

/// Nobody made the sample.
std::vector<FurnitureMaker> sampleMakers()
{
    const std::vector<Item> items = sampleLibrary({}).items;
    std::vector<FurnitureMaker> makers;
    for (const char* name : {"Sample doors", "Sample chairs", "Sample tables"}) {
        const std::size_t first = makers.size() * 8;
        makers.push_back({name, "", 8 - makers.size(), items[first].thumbnail, items[first + 1].thumbnail});
    }
    return makers;
}

std::u32string wide(const std::string& text)
{
    return StringConvert::toUnicodeFromUtf8(text);
}

}  // namespace

TourMakers::TourMakers(const std::vector<fileString>& libraries, const fileString& home, const fileString& content)
    : home_(home), content_(content), makers_(libraries.empty() ? sampleMakers() : makersOf(libraries))
{}

void TourMakers::build(Output& output) const
{
    makeFolder(content_ / U"logos");
    HeldCards held{{}, defaultText};
    std::size_t logos = 0;
    for (std::size_t i = 0; i < makers_.size(); ++i) {
        const FurnitureMaker& maker = makers_[i];
        const bool hasLogo = !maker.icon.empty();
        held.cards.try_emplace(static_cast<long>(i + 1), wide(maker.name), wide(maker.url), U"default", U"default",
                               hasLogo ? fileString(logoName(i)) : fileString(), U"default", false,
                               Library::getTimeNow());
        if (hasLogo) {
            writeLogo(i, maker.icon);
            ++logos;
        }
    }
    installHost(home_);
    installedManufacturers().saveModifiedManufacturers(held.cards, held.defaultText);
    requireWritten(held);
    copyData();
    output.write("  manufacturer_data.json: " + counted(held.cards.size(), "manufacturer") + ", " +
                 counted(logos, "logo") + "\n");
}

void TourMakers::change(Output& output) const
{
    const std::size_t maker = static_cast<std::size_t>(busiest() - 1);
    copyData();
    if (makers_[maker].icon.empty())
        return;
    writeLogo(maker, makers_[maker].otherIcon);
    output.write("  " + logoName(maker) + ": another picture\n");
}

long TourMakers::busiest() const
{
    const auto busier = [](const FurnitureMaker& left, const FurnitureMaker& right) {
        return left.items < right.items;
    };
    return static_cast<long>(std::max_element(makers_.begin(), makers_.end(), busier) - makers_.begin()) + 1;
}

std::string TourMakers::logoName(std::size_t maker) const
{
    return "maker-" + std::to_string(maker + 1) + ".png";
}

void TourMakers::writeLogo(std::size_t maker, const std::string& image) const
{
    writeWhole(content_ / U"logos" / fileString(logoName(maker)), image);
}

void TourMakers::copyData() const
{
    const fileString source = home_ / U"manufacturer-data" / fileString(std::u32string(dataFile));
    if (!FileUtils::copyFile(source, content_ / fileString(std::u32string(dataFile)), true))
        throw CatalogError(source, "cannot be copied");
}

}  // namespace VelkHost
