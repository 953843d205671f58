#pragma once

#include <VelkCommon/Files/SHA1.h>

#include <new>
#include <string>
#include <string_view>

namespace VelkHost {

/// The SHA-1 of bytes that names a stored file or tells two contents apart, so that none at all would do harm: throws
/// std::bad_alloc where the crypto library fails, which has no other reason to.
inline std::string digestOf(std::string_view bytes)
{
    std::string digest = SHA1::bytesToSHA1Hex(bytes);
    if (digest.empty())
        throw std::bad_alloc();
    return digest;
}

}  // namespace VelkHost
