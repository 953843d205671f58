#include "host/catalog/FurnitureLibrary.h"

#include "host/catalog/CatalogBuilder.h"
#include "host/catalog/CleanText.h"
#include "host/catalog/ItemSizes.h"
#include "host/catalog/Properties.h"
#include "host/catalog/ZipSource.h"
#include "host/support/FileError.h"

#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>

namespace VelkHost {
namespace {

constexpr std::string_view catalogStem = "PluginFurnitureCatalog";
constexpr std::string_view catalogExtension = ".properties";
constexpr std::string_view pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr std::size_t maximumPropertiesBytes = std::size_t{16} << 20;
constexpr std::size_t maximumFilesOfItem = 1'000;

/// The item numbers of the keys "name#N", ascending.
std::vector<std::uint32_t> itemNumbers(const Properties& properties)
{
    constexpr std::string_view prefix = "name#";
    std::vector<std::uint32_t> numbers;
    for (auto entry = properties.lower_bound(prefix); entry != properties.end(); ++entry) {
        const std::string& key = entry->first;
        if (!key.starts_with(prefix))
            break;
        std::uint32_t number = 0;
        const char* const end = key.data() + key.size();
        const auto [stop, error] = std::from_chars(key.data() + prefix.size(), end, number);
        if (error == std::errc() && stop == end)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

/// Resource names begin with "/", entry names do not.
std::string entryName(std::string_view resource)
{
    resource.remove_prefix(std::min(resource.find_first_not_of('/'), resource.size()));
    return std::string(resource);
}

FileRole roleOf(std::string_view name)
{
    constexpr std::array<std::string_view, 7> pictures{".jpg", ".jpeg", ".png", ".bmp", ".gif", ".tga", ".tif"};
    const std::string lower = StringUtils::toLowerUtf8(name);
    const bool picture =
        std::any_of(pictures.begin(), pictures.end(), [&](std::string_view end) { return lower.ends_with(end); });
    return picture ? FileRole::Texture : FileRole::Other;
}

class FurnitureLibrary
{
public:
    FurnitureLibrary(const fileString& path, const BuildOptions& options)
        : path_(path), zip_(path), options_(options), texts_(readTexts())
    {}

    Catalog catalog()
    {
        CatalogBuilder builder(path_, header());
        for (const std::uint32_t number : itemNumbers(texts_.back()))
            addItem(builder, '#' + std::to_string(number));
        return builder.finish();
    }

    std::vector<FurnitureManufacturer> manufacturers()
    {
        std::map<std::string, FurnitureManufacturer> manufacturers;
        addProvider(manufacturers, text("provider"));
        for (const std::uint32_t number : itemNumbers(texts_.back()))
            addManufacturer(manufacturers, '#' + std::to_string(number));
        std::vector<FurnitureManufacturer> list;
        list.reserve(manufacturers.size());
        for (auto& [name, manufacturer] : manufacturers)
            list.push_back(std::move(manufacturer));
        return list;
    }

private:
    /// The translations in use, best first, and the default at the end.
    std::vector<Properties> readTexts()
    {
        std::vector<Properties> texts;
        for (const std::string& language : languageChain(options_.language, languages(), path_)) {
            language_ = language_.empty() ? language : language_;
            texts.push_back(*readProperties("_" + language));
        }
        std::optional<Properties> own = readProperties("");
        if (!own)
            throw FileError(path_, "is not a furniture library: it holds no \"PluginFurnitureCatalog.properties\"");
        texts.push_back(std::move(*own));
        return texts;
    }

    std::set<std::string> languages() const
    {
        std::set<std::string> found;
        const std::string prefix = std::string(catalogStem) + "_";
        for (auto name = std::lower_bound(zip_.names().begin(), zip_.names().end(), prefix);
             name != zip_.names().end() && name->starts_with(prefix); ++name)
            if (name->ends_with(catalogExtension) && name->find('/') == std::string::npos)
                found.insert(name->substr(prefix.size(), name->size() - prefix.size() - catalogExtension.size()));
        return found;
    }

    std::optional<Properties> readProperties(const std::string& suffix)
    {
        const std::string name = std::string(catalogStem) + suffix + std::string(catalogExtension);
        const std::optional<std::string> bytes = zip_.read(name, maximumPropertiesBytes);
        if (!bytes)
            return std::nullopt;
        return parseProperties(*bytes);
    }

    /// The text of `key` in the best language that has it.
    std::string_view text(const std::string& key) const
    {
        for (const Properties& properties : texts_)
            if (const std::string_view value = propertyOf(properties, key); !value.empty())
                return value;
        return {};
    }

    Catalog header() const
    {
        Catalog header;
        header.id = options_.id.empty() ? std::string(text("id")) : options_.id;
        if (header.id.empty())
            header.id = fileString(path_).stem().utf8();
        header.name = options_.name.empty() ? std::string(text("name")) : options_.name;
        header.description = text("description");
        header.kind = options_.kind;
        header.language = language_;
        header.licence = text("license");
        header.provider = text("provider");
        header.version = text("version");
        return header;
    }

    /// `suffix` is "#" and the item's number.
    void addItem(CatalogBuilder& builder, const std::string& suffix)
    {
        Item item;
        item.uniqueId = text("id" + suffix);
        if (item.uniqueId.empty())
            item.uniqueId = header().id + suffix;
        item.folder = builder.folder({std::string(text("category" + suffix))});
        item.name = text("name" + suffix);
        item.keywords = joinKeywords({text("tags" + suffix), text("description" + suffix), text("creator" + suffix)});
        item.thumbnail = thumbnail(entryName(text("icon" + suffix)));
        addFiles(item, entryName(text("model" + suffix)));
        builder.add(std::move(item), size(suffix), properties(suffix));
    }

    /// Furniture libraries have centimetres.
    float millimetres(const std::string& key) const { return measureFromText(text(key), 10).value_or(0.0F); }

    ItemSize size(const std::string& suffix) const
    {
        return {millimetres("width" + suffix), millimetres("depth" + suffix), millimetres("height" + suffix)};
    }

    ItemProperties properties(const std::string& suffix) const
    {
        ItemProperties known;
        known.creator = text("creator" + suffix);
        known.licence = text("license" + suffix);
        known.price = priceFromText(text("price" + suffix)).value_or("");
        if (!known.price.empty())
            known.currency = text("currency" + suffix);
        if (const float elevation = millimetres("elevation" + suffix); elevation > 0)
            known.details.push_back({"elevation", measureText(elevation) + " mm"});
        if (const std::string_view date = text("creationDate" + suffix); !date.empty())
            known.details.push_back({"date", std::string(date)});
        for (const auto& [key, name] : {std::pair("doorOrWindow", "door or window"), std::pair("movable", "movable")})
            if (const std::string_view value = text(key + suffix); value == "true" || value == "false")
                known.details.push_back({name, value == "true" ? "yes" : "no"});
        return known;
    }

    static FurnitureManufacturer& manufacturerNamed(std::map<std::string, FurnitureManufacturer>& manufacturers,
                                                    std::string_view name)
    {
        const std::string clean = cleanText(name, limits::nameCharacters);
        FurnitureManufacturer& manufacturer = manufacturers[clean];
        manufacturer.name = clean;
        return manufacturer;
    }

    static void addProvider(std::map<std::string, FurnitureManufacturer>& manufacturers, std::string_view name)
    {
        if (!name.empty())
            manufacturerNamed(manufacturers, name).url = name.starts_with("www.") ? "https://" + std::string(name) : "";
    }

    static void addIcon(FurnitureManufacturer& manufacturer, const std::string& icon)
    {
        if (icon.empty())
            return;
        manufacturer.otherIcon = icon;
        if (manufacturer.icon.empty())
            manufacturer.icon = icon;
    }

    void addManufacturer(std::map<std::string, FurnitureManufacturer>& manufacturers, const std::string& suffix)
    {
        const std::string_view name = text("creator" + suffix);
        if (name.empty())
            return;
        FurnitureManufacturer& manufacturer = manufacturerNamed(manufacturers, name);
        if (manufacturer.otherIcon == manufacturer.icon)
            addIcon(manufacturer, thumbnail(entryName(text("icon" + suffix))));
        ++manufacturer.items;
    }

    std::string thumbnail(const std::string& icon)
    {
        if (icon.empty())
            return {};
        std::optional<std::string> bytes = zip_.read(icon, limits::thumbnailBytes);
        return bytes && bytes->starts_with(pngSignature) ? std::move(*bytes) : std::string();
    }

    /// The model, and the textures and further files in its folder.
    void addFiles(Item& item, const std::string& model) const
    {
        if (model.empty())
            return;
        item.files.push_back({FileRole::Model, cleanText(model, limits::nameCharacters)});
        const std::string folder = model.substr(0, model.rfind('/') + 1);
        if (folder.empty())
            return;
        for (auto name = std::lower_bound(zip_.names().begin(), zip_.names().end(), folder);
             name != zip_.names().end() && name->starts_with(folder) && item.files.size() < maximumFilesOfItem; ++name)
            if (*name != model)
                item.files.push_back({roleOf(*name), cleanText(*name, limits::nameCharacters)});
    }

    fileString path_;
    ZipSource zip_;
    BuildOptions options_;
    std::string language_;
    std::vector<Properties> texts_;
};

}  // namespace

Catalog readFurnitureLibrary(const fileString& path, const BuildOptions& options)
{
    return FurnitureLibrary(path, options).catalog();
}

std::vector<FurnitureManufacturer> readFurnitureManufacturers(const fileString& path)
{
    return FurnitureLibrary(path, {}).manufacturers();
}

}  // namespace VelkHost
