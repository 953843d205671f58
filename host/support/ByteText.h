#pragma once

#include <cstdint>
#include <string>

namespace VelkHost {

/// What progress and sizes are counted in.
inline constexpr double bytesPerKilobyte = 1'000;

/// "999 bytes", "12 KB", "3.4 MB".
std::string byteText(std::uint64_t bytes);

/// "0 KB", "12 KB", "3,400 KB".
std::string kilobyteText(long long bytes);

}  // namespace VelkHost
