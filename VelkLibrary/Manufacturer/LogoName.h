#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <cstddef>

/// @file
/// The rule for the names of logos, which come from the service and become paths. Any thread.

namespace Library {

/// How many bytes a logo's name has at most, with its folders.
constexpr std::size_t longestLogoName = 1'024;

/// Whether a logo may have this name: a plain file name (see isPlainFileName()), or several with "/" or "\\" between
/// them for a logo in a folder, and none of them, letter case apart, the name of one of the module's own files, which
/// may stand in the same folder: "manufacturer_data.json", its download, the hash file, the filter file and the error
/// log. Examples: "acme.png" and "acme/2026/logo.png" are safe; "../acme.png", "/acme.png", "acme//logo.png",
/// "c:acme.png" and "acme/errors.log" are not.
///
/// The manufacturer update neither removes nor downloads a logo of any other name; the card itself is stored. Whoever
/// makes cards or publishes logos asks first.
VELKLIBRARY_EXPORT bool isSafeLogoName(const fileString& name);

/// Whether a link stands where the logo of this safe name is looked for in `folder`, or in the place of one of the
/// folders on the way there; `folder` itself may be one. Such a logo is neither read nor written, as the link may lead
/// anywhere. Ask right before each use: anybody may put a link there.
VELKLIBRARY_EXPORT bool logoIsBehindLink(const fileString& folder, const fileString& name);

}  // namespace Library
