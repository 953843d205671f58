#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <string>
#include <string_view>

namespace SHA1 {

/// The SHA-1 digest of the file's bytes as 40 lower-case hexadecimal digits. Empty for a folder, a
/// missing file and on any read error. Reads in blocks. Throws only when memory runs out. Any thread.
VELKCOMMON_EXPORT std::string fileContentsToSHA1Hex(const fileString& path);

/// The same for bytes in memory. Empty only when the crypto library fails.
VELKCOMMON_EXPORT std::string bytesToSHA1Hex(std::string_view bytes);

}  // namespace SHA1
