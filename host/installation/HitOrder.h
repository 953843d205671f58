#pragma once

#include "host/installation/LibrarySearch.h"

#include <vector>

namespace VelkHost {

/// The hits of a search in `libraries`, best first; equal ones by lower-case name, then by library, then in the
/// order given.
std::vector<Hit> inOrder(const LibrarySet& libraries, const std::vector<Hit>& hits);

}  // namespace VelkHost
