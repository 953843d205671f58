// Reads any bytes as a CSV source. What is read is a catalog: complete, and of clean text.
#include "host/catalog/CsvSource.h"
#include "host/support/FileError.h"

#include <VelkCommon/Text/StringConvert.h>

#include "Check.h"
#include "InputFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

namespace {

using fuzz::check;

void checkText(const std::string& text)
{
    check(StringConvert::isUtf8(text), "texts are UTF-8");
    check(std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }),
          "texts have no control characters");
}

void checkCatalog(const VelkHost::Catalog& catalog)
{
    check(!catalog.id.empty() && !catalog.name.empty(), "a library has an id and a name");
    for (std::size_t i = 0; i < catalog.folders.size(); ++i) {
        checkText(catalog.folders[i].name);
        check(catalog.folderPath(i).size() <= VelkHost::limits::folderDepth, "folders end at a category");
    }
    std::set<std::string> ids;
    for (const VelkHost::Item& item : catalog.items) {
        check(!item.name.empty() && item.folder < catalog.folders.size(), "an item has a name and a folder");
        check(!item.uniqueId.empty() && ids.insert(item.uniqueId).second, "ids differ");
        checkText(item.name);
        checkText(item.keywords);
        for (const VelkHost::ItemFile& file : item.files)
            checkText(file.name);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::InputFile file(".csv");
    const fileString path = file.write(data, size);
    for (const char* language : {"", "de", "pt_BR"}) {
        try {
            VelkHost::BuildOptions options;
            options.language = language;
            checkCatalog(VelkHost::readCsv(path, options));
        } catch (const VelkHost::FileError&) {
            // Refused, with the line.
        }
    }
    return 0;
}
