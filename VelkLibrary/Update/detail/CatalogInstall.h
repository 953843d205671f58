#pragma once

#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/LibraryProgressBase.h>
#include <VelkLibrary/Update/detail/CatalogRun.h>

namespace LibraryCatalogUpdate::detail {

/// Installs a downloaded file: unpacks it when it is packed, hands a new catalog file to the receiver and puts
/// a texture archive in place. False when the catalog could not be installed, which is logged.
VELKLIBRARY_EXPORT bool installCatalog(const LibraryProgressBase& receiver, CatalogRun& run,
                                       const fileString& downloaded, const fileString& fileName, CatalogRecord& record);

}  // namespace LibraryCatalogUpdate::detail
