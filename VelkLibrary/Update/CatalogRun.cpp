#include <VelkLibrary/Update/detail/CatalogRun.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/ErrorLog.h>

namespace LibraryCatalogUpdate::detail {

void logFailure(const char* reason) noexcept
{
    try {
        Library::ErrorLog() << "Exception in catalog update:  " << reason << "\n";
    } catch (...) {
        // Without memory there is no log.
    }
}

FileReport reportOf(const fileString& path)
{
    if (!path.pathExists())
        return {};
    return {path, FileUtils::fileSize(path), SHA1::fileContentsToSHA1Hex(path)};
}

std::string shownName(const fileString& path)
{
    return StringConvert::toWin1252(path.unicodeString());
}

}  // namespace LibraryCatalogUpdate::detail
