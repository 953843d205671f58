#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// The archives of a folder that have the extension ".sh3f", sorted.
std::vector<fileString> furnitureArchives(const std::vector<std::string>& folders);

/// A packed library: the entries of all `sources` (each name once), and a database made of the entries of the first.
void packLibrary(const std::vector<fileString>& sources, const fileString& target,
                 std::size_t maximumEntries = SIZE_MAX);

/// A packed library of a database and `count` entries of some hundred bytes, two thirds of them deflated.
void packSmallEntries(const fileString& target, int count);

/// A packed library of a deflated database of about `bytes` bytes, which repeats text from `source`. Returns the exact
/// number of bytes.
std::uint64_t packLargeDatabase(const fileString& source, const fileString& target, std::uint64_t bytes);

/// A packed library of a stored entry "large.bin" of `bytes` bytes, `count` small entries behind it, and a database.
void packLargeEntry(const fileString& target, std::uint64_t bytes, int count);

}  // namespace bench
