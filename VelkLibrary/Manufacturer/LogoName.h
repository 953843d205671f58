#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

namespace Library {

/// Whether a logo may have this name: it is a plain file name (see isPlainFileName()) and, letter case apart, none of
/// the module's own files, which may stand in the same folder: "manufacturer_data.json", its download, the hash
/// file, the filter file and the error log.
///
/// The manufacturer update neither removes nor downloads a logo of any other name; the card itself is stored. Whoever
/// makes cards or publishes logos asks first. Any thread.
VELKLIBRARY_EXPORT bool isSafeLogoName(const fileString& name);

}  // namespace Library
