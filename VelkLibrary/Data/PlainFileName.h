#pragma once

#include <VelkLibrary/Export.h>

#include <string_view>

namespace Library::detail {

/// `name` names a file in a folder and nothing else, on every system, whichever this one is: no folder,
/// drive, device, stream or wildcard, no control character, no dot or blank at the end, at most 255 bytes.
/// For names from outside; what is not plain is left out, not repaired.
VELKLIBRARY_EXPORT bool isPlainFileName(std::string_view name) noexcept;

/// `text` holds a byte below 0x20, or 0x7F.
VELKLIBRARY_EXPORT bool holdsControlCharacter(std::string_view text) noexcept;

}  // namespace Library::detail
