#pragma once

#include "host/catalog/Catalog.h"

#include <VelkCommon/Files/fileString.h>

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

namespace VelkHost {

/// Puts a catalog together from a source's entries: makes folders as they are named, cleans names, and
/// keeps to the limits. Throws FileError, naming the source, for content that a catalog cannot hold.
class CatalogBuilder
{
public:
    /// `header` is a catalog without folders and items; its texts are cleaned, and an empty name becomes
    /// the id.
    CatalogBuilder(fileString source, Catalog header);

    /// The index of the folder with these names from the category down, which is made when it is new. Empty
    /// names are left out; a path without names becomes the category "Uncategorized".
    std::size_t folder(const std::vector<std::string>& path);

    /// Whether an item with that id was added.
    bool has(const std::string& uniqueId) const { return ids_.contains(uniqueId); }

    /// Adds an item. Its name is cleaned (an empty one becomes the id), its keywords are taken as they
    /// are. The texts of its properties are cleaned. Throws for an id that was added before.
    void add(Item item, const ItemSize& size = {}, ItemProperties properties = {});

    /// Returns the catalog; the builder cannot be used afterwards.
    Catalog finish();

private:
    [[noreturn]] void fail(const std::string& reason) const;
    std::size_t childFolder(std::size_t parent, const std::string& name);
    void count(const Item& item);
    void addProperties(const ItemSize& size, ItemProperties properties);

    fileString source_;
    Catalog catalog_;
    std::map<std::pair<std::size_t, std::string>, std::size_t> folders_;  // by parent and name
    std::unordered_set<std::string> ids_;
    std::size_t textBytes_ = 0;
    std::size_t thumbnailBytes_ = 0;
    std::size_t fileCount_ = 0;
    std::size_t detailCount_ = 0;
};

}  // namespace VelkHost
