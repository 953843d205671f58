// Reads any bytes as a hash file. Whatever they are, each name that is taken is a plain file name, and each line
// that is taken reads back as it was.
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>

#include "Check.h"
#include "InputFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace LibraryCatalogUpdate;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const auto entry = detail::parseHashLine(line);
        if (!entry)
            continue;
        fuzz::check(Library::isPlainFileName(entry->first), "the name is plain");
        fuzz::check(detail::parseHashLine(entry->first + ":" + entry->second) == entry, "it reads back");
    }
    static const fuzz::InputFile file(".txt");
    CatalogTable catalogs;
    readCatalogHashFile(file.write(data, size), catalogs, CoreCatalogs);
    for (const auto& [name, record] : catalogs)
        fuzz::check(record.kind == CoreCatalogs && name.parentPath().empty(), "only what lies beside it");
    return 0;
}
