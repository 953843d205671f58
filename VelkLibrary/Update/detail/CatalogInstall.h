#pragma once

#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/LibraryProgressBase.h>
#include <VelkLibrary/Update/detail/CatalogRun.h>

namespace LibraryCatalogUpdate::detail {

/// Makes of a downloaded file what the host needs: unpacks it where it is packed, hands a new database to
/// the receiver, puts an archive of referenced files in place. False when the catalog is not installed,
/// which is logged.
VELKLIBRARY_EXPORT bool installCatalog(const LibraryProgressBase& receiver, CatalogRun& run,
                                       const fileString& downloaded, const fileString& fileName, CatalogRecord& record);

}  // namespace LibraryCatalogUpdate::detail
