// Reads any bytes as a catalog file. An input that does not begin like a database is a list of changes to a sound
// catalog file, each of two bytes for the place, one for the length, and the new bytes. They reach what lies behind
// the checks of the header, which random bytes hardly ever pass.
#include "host/catalog/CatalogFile.h"
#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include "Check.h"
#include "InputFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using VelkHost::CatalogContent;

/// A catalog file with something in each of its tables.
std::string soundFile()
{
    VelkHost::Catalog catalog;
    catalog.id = "id";
    catalog.name = "Name";
    catalog.folders = {{VelkHost::Folder::noParent, "Room"}, {0, "Seating"}};
    catalog.items = {{"id#1", 1, "Chair", "seat", "png", {{VelkHost::FileRole::Model, "chair.obj"}}},
                     {"id#2", 0, "Desk", "", "", {{VelkHost::FileRole::Texture, "oak.png"}}}};
    const fuzz::OwnFolder folder;
    const fileString path((folder.path() / "sound.calib").string());
    VelkHost::writeCatalog(catalog, path);
    return VelkHost::readWhole(path, std::size_t{1} << 20);
}

std::string changed(std::string file, const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t head = 3;
    while (size > head) {
        const std::size_t place = (data[0] | static_cast<std::size_t>(data[1]) << 8) % file.size();
        const std::size_t count = std::min({std::size_t{data[2]} % 32 + 1, size - head, file.size() - place});
        std::copy_n(data + head, count, file.begin() + static_cast<std::ptrdiff_t>(place));
        data += head + count;
        size -= head + count;
    }
    return file;
}

void read(const fileString& path)
{
    try {
        const VelkHost::Catalog catalog = VelkHost::readCatalog(path, CatalogContent::Everything);
        for (std::size_t i = 0; i < catalog.folders.size(); ++i)
            fuzz::check(catalog.folderPath(i).size() <= VelkHost::limits::folderDepth, "folders end at a category");
        for (const VelkHost::Item& item : catalog.items)
            fuzz::check(item.folder < catalog.folders.size(), "an item has a folder");
    } catch (const VelkHost::FileError&) {
        // Refused, with the reason.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".calib");
    static const std::string sound = soundFile();
    std::string bytes(reinterpret_cast<const char*>(data), size);
    if (!bytes.starts_with("SQLite"))
        bytes = changed(sound, data, size);
    read(file.write(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
    return 0;
}
