#pragma once

/// @file
/// How the catalog update speaks to the content service: where the service is, how it is asked about a
/// catalog, what its answers mean, and the file that remembers them. A catalog is asked for by a header
/// request that carries the SHA-1 of the installed file as an entity tag; the service answers 304 when
/// that is current.
///
/// The service's address belongs to the process: it is that of the updater constructed last. Names,
/// product and version go into addresses as they are; the transport encodes what a URL cannot carry.
/// One run at a time; within it, one thread.

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Update/CatalogHashFile.h>
#include <VelkLibrary/Update/CatalogRecord.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace LibraryCatalogUpdate {

/// The address that requests are made of: where the service's address finally leads to. Asked for once
/// and remembered; empty when it leads nowhere, which is logged, and the next call tries again.
VELKLIBRARY_EXPORT std::string resolveApiEndpoint();

/// The folder of the installed catalogs of a kind; empty for an unknown one.
VELKLIBRARY_EXPORT fileString catalogFolder(std::uint32_t kind);

/// The folder that catalogs of a kind are downloaded to: below the temporary folder, named by the
/// application object, ".downloads." and the kind's folder. Empty for an unknown kind, and when the
/// application's name makes no folder name. Throws EnforcerException without an application object.
VELKLIBRARY_EXPORT fileString downloadFolder(std::uint32_t kind);

/// The name of the file at the service that lists the core catalogs of the running edition.
VELKLIBRARY_EXPORT fileString coreIndexFileName();

/// The address to ask for a catalog at, empty without an endpoint, and the header lines to send.
VELKLIBRARY_EXPORT std::pair<std::string, std::vector<std::string>> buildCatalogRequest(const fileString& fileName,
                                                                                        const CatalogRecord& record,
                                                                                        const std::string& product,
                                                                                        const std::string& version);

/// Takes what a header answer tells into the record: status, length, entity tag. Control characters in
/// the tag are dropped.
VELKLIBRARY_EXPORT void applyHeaderResponse(CatalogRecord& record, const std::string& header, long status);

/// Asks for the text that came with a 403 or 404, and keeps it in the record.
VELKLIBRARY_EXPORT void fetchServiceMessage(const fileString& fileName, CatalogRecord& record,
                                            const std::string& product, const std::string& version);

/// The extension is ".calib", ".calibz" or ".zip", in this letter case.
VELKLIBRARY_EXPORT bool isSupportedCatalogFile(const fileString& path);

}  // namespace LibraryCatalogUpdate
