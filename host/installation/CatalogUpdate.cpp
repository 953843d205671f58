#include "host/installation/CatalogUpdate.h"

#include "host/support/Folders.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

namespace VelkHost {
namespace {

std::set<fileString> catalogsIn(const fileString& folder, const std::vector<std::string>& added)
{
    using Library::extensions::database;
    makeFolder(folder);
    const std::vector<fileString> files = filesInFolder(folder, database);
    std::set<fileString> catalogs(files.begin(), files.end());
    for (const std::string& text : added) {
        const fileString name(text);
        catalogs.insert(folder / (name.hasExtension(database) ? name : name + fileString(database)));
    }
    return catalogs;
}

}  // namespace

InstalledCatalogs installedCatalogs(const AddedCatalogs& added)
{
    const PathUtils& paths = PathUtils::getObject();
    makeFolder(paths.getUserDatabasePath());
    return {catalogsIn(paths.getCoreLibraryDatabasePath(), {}),
            catalogsIn(paths.getBonusLibraryDatabasePath(), added.bonus),
            catalogsIn(paths.getManufacturerLibraryPath(), added.manufacturer)};
}

UpdateOutcome updateOutcome(const std::optional<LibraryCatalogUpdate::UpdateData>& report,
                            const CatalogInstaller& installer)
{
    using namespace LibraryCatalogUpdate;
    if (!report)
        return UpdateOutcome::Cancelled;
    if (report->outcome == ErrorsAutomatic || report->outcome == ErrorsManual || !installer.failures().empty())
        return UpdateOutcome::Failed;
    return report->outcome == Installed ? UpdateOutcome::Installed : UpdateOutcome::UpToDate;
}

}  // namespace VelkHost
