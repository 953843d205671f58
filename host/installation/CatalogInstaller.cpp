#include "host/installation/CatalogInstaller.h"

#include "host/catalog/CatalogFile.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>

namespace VelkHost {
namespace {

using LibraryCatalogUpdate::CatalogTable;

// Why the new database cannot take the installed one's place; empty when it did.
std::string replaceCatalog(const fileString& installed, const fileString& database)
{
    try {
        readCatalog(database, CatalogContent::Names);
    } catch (const FileError& error) {
        return "what the service sent " + error.reason();
    }
    if (!FileUtils::createDirectoriesWithPerm(installed.parentPath()))
        return "its folder cannot be made";
    if (!FileUtils::moveFile(database, installed, true))
        return "it cannot be replaced; is it open elsewhere?";
    return {};
}

// Hash files are caches: without a catalog's line its hash is computed anew.
void forgetHash(const fileString& catalog)
{
    using namespace LibraryCatalogUpdate;
    const fileString name = catalog.stemWithExtension();
    for (const std::uint32_t kind : {CoreCatalogs, ManufacturerCatalogs, BonusCatalogs}) {
        if (catalogFolder(kind) / name != catalog)
            continue;
        CatalogTable catalogs;
        readCatalogHashFile(catalogHashFile(kind), catalogs, kind);
        if (catalogs.erase(name) > 0)
            writeCatalogHashFile(catalogs, kind);
    }
}

}  // namespace

bool CatalogInstaller::install(const FileStringPair& paths)
{
    const auto& [installed, database] = paths;
    const std::string reason = replaceCatalog(installed, database);
    if (reason.empty()) {
        installed_.push_back(installed);
        return true;
    }
    failures_.push_back({installed, reason});
    return false;
}

void CatalogInstaller::finish()
{
    for (const Failure& failure : failures_)
        forgetHash(failure.catalog);
}

}  // namespace VelkHost
