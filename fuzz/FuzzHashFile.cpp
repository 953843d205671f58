// Reads any bytes as a hash file. Whatever they are, each name that is taken is a plain file name, and each line
// that is taken reads back as it was; so do the hashes of the catalogs beside the file once it is written anew.
#include <VelkCommon/HostServices.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>

#include "Check.h"
#include "WorkFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <utility>

namespace {

using namespace LibraryCatalogUpdate;

/// The folder of the core catalogs, with some of them and a hash file.
class CoreFolder
{
public:
    CoreFolder()
    {
        for (const char* name : {"plants.calib", "doors.calib", "a", "\xC3\xBC.calib"})
            std::ofstream(folder_.path() / name) << "catalog";
        Velk::HostServices host;
        host.folders.coreLibraryDatabase = fileString(folder_.path().string());
        Velk::installHost(std::move(host));
    }

    fileString write(const std::uint8_t* data, std::size_t size) const
    {
        const fileString path = catalogHashFile(CoreCatalogs);
        std::ofstream file(path.utf8(), std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return path;
    }

private:
    fuzz::OwnFolder folder_;
};

/// What is read is written, and read again: the hashes, or the tags of what was downloaded meanwhile.
void checkFile(const fileString& path, bool updated)
{
    CatalogTable catalogs;
    readCatalogHashFile(path, catalogs, CoreCatalogs);
    for (auto& [name, record] : catalogs) {
        fuzz::check(record.kind == CoreCatalogs && name.parentPath().empty(), "only what lies beside it");
        record.updated = updated;
        record.remoteHash = record.localHash + (updated ? "-new" : "\n");
    }
    catalogs[fileString(std::string("other.calib"))] = {BonusCatalogs, "hash", {}, {}, false, 0, 0};
    writeCatalogHashFile(catalogs, CoreCatalogs);
    CatalogTable again;
    readCatalogHashFile(path, again, CoreCatalogs);
    std::erase_if(catalogs, [&](const auto& entry) {
        const CatalogRecord& record = entry.second;
        return record.kind != CoreCatalogs || (!updated && record.localHash.empty());
    });
    fuzz::check(std::equal(catalogs.begin(), catalogs.end(), again.begin(), again.end(),
                           [&](const auto& one, const auto& other) {
                               const CatalogRecord& record = one.second;
                               return one.first == other.first &&
                                      other.second.localHash == (updated ? record.remoteHash : record.localHash);
                           }),
                "each hash comes back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
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
    static const CoreFolder folder;
    checkFile(folder.write(data, size), size % 2 != 0);
    return 0;
}
