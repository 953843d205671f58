#pragma once

/// @file
/// How the catalog update speaks to the content service: where the service is, how it is asked about a
/// catalog, what its answers mean, and the file that remembers them. A catalog is asked for by a header
/// request that carries the SHA-1 of the installed file as an entity tag; the service answers 304 when that tag
/// is current.
///
/// The service's address belongs to the process: the updater that was constructed last sets it. Names, product
/// and version go into addresses as they are; the transport encodes what a URL cannot carry. One run at a time;
/// within it, one thread.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Update/CatalogHashFile.h>
#include <VelkLibrary/Update/CatalogRecord.h>
#include <VelkLibrary/Update/RunReport.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace LibraryCatalogUpdate {

/// The address that requests begin with: where the service's address leads after all redirects. It is looked up
/// once and remembered. Empty when it leads nowhere; that is logged, and the next call tries again.
VELKLIBRARY_EXPORT std::string resolveApiEndpoint();

/// Why the address last led nowhere; without a reason when it did not.
VELKLIBRARY_EXPORT RunFault apiEndpointFault();

/// The folder of the installed catalogs of a kind; empty for an unknown one.
VELKLIBRARY_EXPORT fileString catalogFolder(std::uint32_t kind);

/// The folder that catalogs of a kind are downloaded to: it lies in the temporary folder, and its name is that
/// of the application object, ".downloads." and the name of the kind's folder. Empty for an unknown kind, and
/// when the application's name cannot be part of a folder's name. Throws EnforcerException without an
/// application object.
VELKLIBRARY_EXPORT fileString downloadFolder(std::uint32_t kind);

/// The name of the file at the service that lists the core catalogs of the running edition.
VELKLIBRARY_EXPORT fileString coreIndexFileName();

/// The address to ask for a catalog at, empty without an endpoint, and the header lines to send.
VELKLIBRARY_EXPORT std::pair<std::string, std::vector<std::string>> buildCatalogRequest(const fileString& fileName,
                                                                                        const CatalogRecord& record,
                                                                                        const std::string& product,
                                                                                        const std::string& version);

/// Stores in the record what a header answer says: status, length, entity tag. Control characters in the tag
/// are dropped.
VELKLIBRARY_EXPORT void applyHeaderResponse(CatalogRecord& record, const std::string& header, long status);

/// Asks the service for the text that belongs to a 403 or 404 answer, and stores it in the record.
VELKLIBRARY_EXPORT void fetchServiceMessage(const fileString& fileName, CatalogRecord& record,
                                            const std::string& product, const std::string& version);

/// Whether the extension is ".calib", ".calibz" or ".zip", in this letter case.
VELKLIBRARY_EXPORT bool isSupportedCatalogFile(const fileString& path);

}  // namespace LibraryCatalogUpdate
