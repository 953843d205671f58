#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace VelkHost {

/// Throws FileError unless a regular file of at most `maximumBytes` stands at `path`. Folders, pipes
/// and devices are refused, as opening one may wait for ever. Returns its size.
std::uint64_t requireFile(const fileString& path, std::uint64_t maximumBytes);

/// The first `count` bytes of the file, or all of it when it is shorter. Throws FileError.
std::string readBeginning(const fileString& path, std::size_t count);

/// All bytes of a file of at most `maximumBytes`, see requireFile(). Throws FileError.
std::string readWhole(const fileString& path, std::size_t maximumBytes);

/// Writes a file in one step: whoever reads sees the old file or the new one. Throws FileError.
void writeWhole(const fileString& path, const std::string& bytes);

}  // namespace VelkHost
