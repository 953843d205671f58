#pragma once

#include <VelkLibrary/Export.h>

#include <string_view>

/// @file
/// The rule for names that come from outside and become files: lines of the service's index and of hash files,
/// entries of archives, logos. Refuse a name that breaks it, and do not repair it: a repaired name may be
/// that of another file. Any thread; nothing throws.

namespace Library {

/// Whether `name` names a file in a folder and nothing else, on every system, not only on this one.
///
/// A plain name is 1 to 255 bytes long and does not end with a dot or a blank. It has none of the characters
/// / \ : * ? " < > | and no control character (see holdsControlCharacter()). And it is not the name of a device
/// (CON, PRN, AUX, NUL, CONIN$, CONOUT$, COM1 to COM9, LPT1 to LPT9, in any letter case, and COM and LPT with a
/// superscript 1, 2 or 3), neither alone nor with an extension.
/// Examples: "Küche 2.calib" and ".hidden" are plain; "..", "a/b", "nul.txt" and "name." are not. Bytes that are not
/// UTF-8 do not count against a name.
VELKLIBRARY_EXPORT bool isPlainFileName(std::string_view name) noexcept;

/// Whether `text` holds a byte below 0x20, or 0x7F.
VELKLIBRARY_EXPORT bool holdsControlCharacter(std::string_view text) noexcept;

}  // namespace Library
