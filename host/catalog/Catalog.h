#pragma once

#include <VelkLibrary/Search/Info.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// A library's content in memory, as read from a source or a catalog file (".calib"). All texts are UTF-8.

namespace VelkHost {

/// Where a library comes from. The numbers are stored in catalog files and are this host's `libType`s.
enum class LibraryKind : std::int32_t {
    Core = 1,          ///< supplied by the manufacturer
    Manufacturer = 2,  ///< supplied by a manufacturer
    Bonus = 4,         ///< additional content
    User = 8           ///< the user's own
};

/// "core", "manufacturer", "bonus" or "user".
std::string_view kindName(LibraryKind kind);
/// The kind of that name or number; empty for any other.
std::optional<LibraryKind> kindFromName(std::string_view name);
std::optional<LibraryKind> kindFromNumber(std::int64_t number);
/// The kind as the module's search takes it.
inline libType toLibType(LibraryKind kind)
{
    return static_cast<libType>(kind);
}

/// Limits on what a catalog holds, far above any real library. Sources and files beyond them are refused.
namespace limits {
constexpr std::size_t items = 1'000'000;
constexpr std::size_t folders = 100'000;
constexpr std::size_t folderDepth = 32;
constexpr std::size_t itemFiles = 4'000'000;                     // names, of all items
constexpr std::size_t itemDetails = 4'000'000;                   // of all items
constexpr float itemMillimetres = 1'000'000;                     // width, depth or height
constexpr std::size_t nameCharacters = 1'000;                    // code points; longer names are cut
constexpr std::size_t keywordBytes = std::size_t{1} << 20;       // of one item
constexpr std::size_t textBytes = std::size_t{512} << 20;        // all names, keywords and file names
constexpr std::size_t thumbnailBytes = std::size_t{8} << 20;     // one picture
constexpr std::size_t allThumbnailBytes = std::size_t{1} << 30;  // of one catalog
}  // namespace limits

/// The part that a referenced file plays. The numbers are stored in catalog files.
enum class FileRole : std::int32_t { Model = 1, Texture = 2, Other = 3 };

/// The name of a file that an item uses, as the source has it. A name for people and for lookups in
/// the source, never a path on disk.
struct ItemFile
{
    FileRole role = FileRole::Other;
    std::string name;

    bool operator==(const ItemFile&) const = default;
};

/// A folder; one without a parent is a category.
struct Folder
{
    static constexpr std::size_t noParent = static_cast<std::size_t>(-1);

    std::size_t parent = noParent;  ///< index of a folder that stands before this one
    std::string name;

    bool operator==(const Folder&) const = default;
};

/// How large an item is, in millimetres. A measure of 0 is not known.
struct ItemSize
{
    float width = 0;
    float depth = 0;
    float height = 0;

    /// Whether any measure is known.
    bool isKnown() const { return width > 0 || depth > 0 || height > 0; }
    bool operator==(const ItemSize&) const = default;
};

/// Something that is known about an item and has no field of its own.
struct ItemDetail
{
    std::string name;  ///< such as "elevation"
    std::string value;

    bool operator==(const ItemDetail&) const = default;
};

/// What is known about an item besides its names and its size. Texts may be empty.
struct ItemProperties
{
    std::string creator;
    std::string licence;
    std::string price;     ///< a decimal number, such as "129.90"
    std::string currency;  ///< of the price, such as "EUR"
    std::vector<ItemDetail> details;

    bool operator==(const ItemProperties&) const = default;
};

struct Item
{
    std::string uniqueId;    ///< unique in its catalog, never empty
    std::size_t folder = 0;  ///< index of the folder that holds it
    std::string name;
    std::string keywords;   ///< all keywords in one text, separated by ", "
    std::string thumbnail;  ///< a PNG file's bytes; empty when there is none
    std::vector<ItemFile> files;

    bool operator==(const Item&) const = default;
};

struct Catalog
{
    std::string id;  ///< never empty
    std::string name;
    LibraryKind kind = LibraryKind::User;
    std::string language;  ///< of the names, such as "de" or "pt_PT"; empty for the source's own
    std::string description;
    std::string created;  ///< when the file was written (UTC)
    std::string licence;
    std::string provider;
    std::string version;  ///< of the content, as its makers count it

    std::vector<Folder> folders;  ///< parents stand before their children
    std::vector<Item> items;
    std::vector<ItemSize> sizes;             ///< of the items with the same index; empty when none is known
    std::vector<ItemProperties> properties;  ///< of the items with the same index; empty when none has any

    /// The size and the properties of the item with that index; with nothing known where the lists are empty.
    ItemSize sizeOf(std::size_t item) const { return sizes.empty() ? ItemSize() : sizes[item]; }
    const ItemProperties& propertiesOf(std::size_t item) const;
    /// The names from the category down to the folder.
    std::vector<std::string> folderPath(std::size_t folder) const;

    bool operator==(const Catalog&) const = default;
};

}  // namespace VelkHost
