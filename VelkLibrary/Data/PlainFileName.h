#pragma once

#include <VelkLibrary/Export.h>

#include <string_view>

namespace Library::detail {

/// Whether `name` is the bare name of a file on every system, not only on this one: it holds no folder, drive,
/// device, stream or wildcard, no control character, no dot or blank at the end, and has at most 255 bytes.
/// This is for names from outside; a name that is not plain is left out, not repaired.
VELKLIBRARY_EXPORT bool isPlainFileName(std::string_view name) noexcept;

/// Whether `text` holds a byte below 0x20, or the byte 0x7F.
VELKLIBRARY_EXPORT bool holdsControlCharacter(std::string_view text) noexcept;

}  // namespace Library::detail
