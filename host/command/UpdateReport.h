#pragma once

#include "host/installation/LibraryUpdate.h"

#include <cstddef>

namespace VelkHost {

class Output;

/// Prints what an update did, as text for people or as JSON. `kilobytes` is what it had to download.
void writeUpdateReport(Output& output, const UpdateResult& result, std::size_t kilobytes, bool json);

}  // namespace VelkHost
