#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <map>
#include <string>

namespace LibraryCatalogUpdate {

/// The kinds of catalog.
enum CatalogKind : std::uint32_t { CoreCatalogs = 1, ManufacturerCatalogs = 2, BonusCatalogs = 4 };

/// What a run knows about one catalog file.
struct CatalogRecord
{
    std::uint32_t kind = 0;           ///< a CatalogKind
    std::string localHash;            ///< SHA-1 of the installed file, as hexadecimal text
    std::string remoteHash;           ///< the entity tag that the service reported last, without quotes
    std::string serviceMessage;       ///< the body of a 403 or 404 answer
    bool updated = false;             ///< a downloaded version was installed in this run
    std::uint32_t contentLength = 0;  ///< bytes to download
    std::int32_t status = 0;          ///< HTTP status of the header request

    /// The service has another version than the installed one.
    bool needsDownload() const { return status == 200 && remoteHash != localHash; }
};

/// The catalogs of a run by file name with extension.
using CatalogTable = std::map<fileString, CatalogRecord>;

}  // namespace LibraryCatalogUpdate
