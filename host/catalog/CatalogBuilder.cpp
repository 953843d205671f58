#include "host/catalog/CatalogBuilder.h"

#include "host/catalog/CleanText.h"
#include "host/support/FileError.h"

#include <utility>

namespace VelkHost {

CatalogBuilder::CatalogBuilder(fileString source, Catalog header)
    : source_(std::move(source)), catalog_(std::move(header))
{
    catalog_.id = cleanText(catalog_.id, limits::nameCharacters);
    catalog_.name = cleanText(catalog_.name, limits::nameCharacters);
    catalog_.description = cleanText(catalog_.description, 10 * limits::nameCharacters);
    for (std::string* const text : {&catalog_.licence, &catalog_.provider, &catalog_.version})
        *text = cleanText(*text, limits::nameCharacters);
    if (catalog_.id.empty())
        fail("has no library id; give it one with --id");
    if (catalog_.name.empty())
        catalog_.name = catalog_.id;
}

void CatalogBuilder::fail(const std::string& reason) const
{
    throw FileError(source_, reason);
}

std::size_t CatalogBuilder::folder(const std::vector<std::string>& path)
{
    std::size_t folder = Folder::noParent;
    std::size_t depth = 0;
    for (const std::string& piece : path) {
        const std::string name = cleanText(piece, limits::nameCharacters);
        if (name.empty())
            continue;
        if (++depth > limits::folderDepth)
            fail("folders are nested more than " + std::to_string(limits::folderDepth) + " deep");
        folder = childFolder(folder, name);
    }
    return folder == Folder::noParent ? childFolder(folder, "Uncategorized") : folder;
}

std::size_t CatalogBuilder::childFolder(std::size_t parent, const std::string& name)
{
    const auto [place, isNew] = folders_.try_emplace({parent, name}, catalog_.folders.size());
    if (isNew) {
        if (catalog_.folders.size() == limits::folders)
            fail("has more than " + std::to_string(limits::folders) + " folders");
        catalog_.folders.push_back({parent, name});
        textBytes_ += name.size();
    }
    return place->second;
}

void CatalogBuilder::add(Item item, const ItemSize& size, ItemProperties properties)
{
    item.uniqueId = cleanText(item.uniqueId, limits::nameCharacters);
    item.name = cleanText(item.name, limits::nameCharacters);
    if (item.uniqueId.empty())
        fail("has an item without an id");
    if (item.name.empty())
        item.name = item.uniqueId;
    if (!ids_.insert(item.uniqueId).second)
        fail("the id \"" + item.uniqueId + "\" occurs twice; ids must differ");
    count(item);
    catalog_.items.push_back(std::move(item));
    addProperties(size, std::move(properties));
}

void CatalogBuilder::addProperties(const ItemSize& size, ItemProperties properties)
{
    for (std::string* const text : {&properties.creator, &properties.licence, &properties.price, &properties.currency})
        *text = cleanText(*text, limits::nameCharacters);
    for (ItemDetail& detail : properties.details)
        detail = {cleanText(detail.name, limits::nameCharacters), cleanText(detail.value, limits::nameCharacters)};
    std::erase_if(properties.details,
                  [](const ItemDetail& detail) { return detail.name.empty() || detail.value.empty(); });
    detailCount_ += properties.details.size();
    if (detailCount_ > limits::itemDetails)
        fail("has more than " + std::to_string(limits::itemDetails) + " details");
    if (size.isKnown() || !catalog_.sizes.empty()) {
        catalog_.sizes.resize(catalog_.items.size());
        catalog_.sizes.back() = size;
    }
    if (properties != ItemProperties() || !catalog_.properties.empty()) {
        catalog_.properties.resize(catalog_.items.size());
        catalog_.properties.back() = std::move(properties);
    }
}

void CatalogBuilder::count(const Item& item)
{
    textBytes_ += item.uniqueId.size() + item.name.size() + item.keywords.size();
    for (const ItemFile& file : item.files)
        textBytes_ += file.name.size();
    thumbnailBytes_ += item.thumbnail.size();
    fileCount_ += item.files.size();
    if (catalog_.items.size() == limits::items)
        fail("has more than " + std::to_string(limits::items) + " items");
    if (textBytes_ > limits::textBytes || fileCount_ > limits::itemFiles)
        fail("holds more text than a catalog can");
    if (thumbnailBytes_ > limits::allThumbnailBytes)
        fail("holds more than " + std::to_string(limits::allThumbnailBytes >> 20) + " MiB of thumbnails");
}

Catalog CatalogBuilder::finish()
{
    return std::move(catalog_);
}

}  // namespace VelkHost
