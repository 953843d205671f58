#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// @file
/// A published site on disk (docs/content-service.md):
///
///     SITE/current         one line: the name of the table in force; replaced by rename, the one switch
///     SITE/files/...       everything else, each file named after the SHA-1 of its bytes and never changed

namespace VelkHost {

/// A file of the site as clients get it.
struct SiteFile
{
    std::string stored;      ///< its name in SITE/files: 40 hexadecimal digits and an extension
    std::string tag;         ///< its entity tag, without quotes
    std::uint64_t size = 0;  ///< bytes

    bool operator==(const SiteFile&) const = default;
};

/// One edition: what clients can ask for. Names are UTF-8.
struct SiteTable
{
    std::uint64_t edition = 0;                     ///< counts up from 1
    std::string published;                         ///< when (UTC)
    std::string previous;                          ///< the table before this one; empty for the first
    std::map<std::string, SiteFile> libraries;     ///< catalogs, archives and indexes by the name in requests
    std::map<std::string, SiteFile> logos;         ///< by relative name
    std::optional<SiteFile> manufacturers;         ///< the manufacturers' data
    std::map<std::string, std::string> withdrawn;  ///< refused libraries with the message for the client
    /// Of each packed library, for every tag it ever had, a digest of what lies beside its catalog.
    std::map<std::string, std::map<std::string, std::string>> companions;

    /// The same for clients, whatever the number and the time.
    bool sameContent(const SiteTable& other) const;

    bool operator==(const SiteTable&) const = default;
};

/// The path of a file in SITE/files.
fileString storedFile(const fileString& site, const std::string& name);

/// Whether `name` is one that a file in SITE/files can have.
bool isStoredName(std::string_view name);

/// The name of the table in force; empty when nothing is published in `site`. Throws FileError when the
/// switch cannot be read.
std::string currentTable(const fileString& site);

/// Reads the table of that name. Throws FileError for one that is missing or damaged, and std::bad_alloc.
SiteTable readTable(const fileString& site, const std::string& name);

/// The table as it is stored: JSON, and complete: throws std::bad_alloc otherwise.
std::string tableText(const SiteTable& table);

}  // namespace VelkHost
