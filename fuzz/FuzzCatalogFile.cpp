#include "host/catalog/CatalogFile.h"
#include "host/support/FileError.h"

#include "Check.h"
#include "InputFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".calib");
    const fileString path = file.write(data, size);
    try {
        const VelkHost::Catalog catalog = VelkHost::readCatalog(path, VelkHost::CatalogContent::Everything);
        for (std::size_t i = 0; i < catalog.folders.size(); ++i)
            fuzz::check(catalog.folderPath(i).size() <= VelkHost::limits::folderDepth, "folders end at a category");
        for (const VelkHost::Item& item : catalog.items)
            fuzz::check(item.folder < catalog.folders.size(), "an item has a folder");
    } catch (const VelkHost::FileError&) {
        // Refused, with the reason.
    }
    return 0;
}
