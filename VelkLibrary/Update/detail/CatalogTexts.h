#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @file
/// The texts that the catalog update reads: lines of hash files, and the core content index. Neither is
/// trusted: both come from places where anyone may have written.

namespace LibraryCatalogUpdate::detail {

/// The catalog's file name and its hash from a line of a hash file, without the line's end; nothing when
/// the line is something else. A carriage return at its end is ignored.
VELKLIBRARY_EXPORT std::optional<std::pair<std::string, std::string>> parseHashLine(std::string_view line);

/// The names of catalogs in a core content index, in its order: the lines that are plain names of
/// supported files. Carriage returns are ignored.
VELKLIBRARY_EXPORT std::vector<fileString> parseCoreIndex(std::string_view body);

}  // namespace LibraryCatalogUpdate::detail
