#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// An entry of a library, with what a rating looks at.
struct Entry
{
    std::string name;
    std::string keywords;
    std::string creator = {};  ///< who made it; empty if the library does not say
};

/// The entries of all furniture libraries (*.sh3f, every language) and symbol libraries (*.kicad_sym)
/// in these folders and below (in the system's, where none are given), in the order of their files' names, each
/// distinct pair once.
std::vector<Entry> readLibraries(const std::vector<std::string>& folders);

/// `count` entries put together from the words of others; every run gives the same entries.
std::vector<Entry> combined(const std::vector<Entry>& entries, std::size_t count);

/// `count` of the entries, at even distances.
std::vector<Entry> sample(const std::vector<Entry>& entries, std::size_t count);

}  // namespace bench
