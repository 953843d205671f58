#pragma once

#include "support/TestHost.h"

#include <VelkCommon/Files/SHA1.h>

#include <string>

namespace test {

/// The SHA-1 of bytes, as the hash of a file that holds them.
inline std::string sha1(const std::string& bytes)
{
    const TemporaryFolder folder;
    writeFile(folder / U"bytes", bytes);
    return SHA1::fileContentsToSHA1Hex(folder / U"bytes");
}

}  // namespace test
