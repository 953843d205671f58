#include "host/catalog/FurnitureLibrary.h"
#include "host/support/FileError.h"

#include "Check.h"
#include "InputFile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".sh3f");
    const fileString path = file.write(data, size);
    for (const char* language : {"", "de"}) {
        try {
            VelkHost::BuildOptions options;
            options.language = language;
            const VelkHost::Catalog catalog = VelkHost::readFurnitureLibrary(path, options);
            fuzz::check(!catalog.id.empty(), "a library has an id");
            for (const VelkHost::Item& item : catalog.items)
                fuzz::check(!item.name.empty() && item.folder < catalog.folders.size(),
                            "an item has a name and a folder");
        } catch (const VelkHost::FileError&) {
            // Refused, with the reason.
        }
    }
    return 0;
}
