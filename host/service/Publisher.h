#pragma once

#include "host/catalog/CatalogFormat.h"
#include "host/service/PublishError.h"

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace VelkHost {

/// A library in an edition, compared with the edition before.
struct PublishedLibrary
{
    enum class State { Added, Changed, Unchanged, Removed };

    std::string name;  ///< as clients ask for it
    State state = State::Unchanged;
    std::uint64_t size = 0;               ///< bytes; of a removed library the last size
    std::optional<CatalogFormat> format;  ///< of its catalog; not known of a removed one
};

/// What a publication did.
struct PublishReport
{
    std::uint64_t edition = 0;
    bool changed = false;  ///< false: the site had everything already, and its edition stays in force
    std::vector<PublishedLibrary> libraries;
    std::size_t logos = 0;
    bool manufacturers = false;
    std::size_t left = 0;  ///< files of earlier editions that could not be removed; the next publication tries again
};

/// Publishes the folder (PublishFolder.h) as the next edition of `site`, which is made when missing.
///
/// Clients that read meanwhile get the old edition or the new one: files are added under names that depend
/// on their content, then the table is switched by one rename. Files that neither the new nor the previous
/// edition uses are removed at the end. Whenever the process dies, the site serves one of the two.
///
/// The catalogs, archives and logos of an edition never change under their entity tag: a packed library
/// whose catalog is the same as in any earlier edition, but whose other entries are not, is refused, because
/// installations could not see the difference.
///
/// Throws PublishError for a folder that cannot be published, and FileError for a site that cannot be
/// written or is being published to by another process. One call at a time per site.
PublishReport publish(const fileString& folder, const fileString& site);

}  // namespace VelkHost
