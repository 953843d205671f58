#pragma once

#include "LibraryNames.h"
#include "Measures.h"

#include <vector>

namespace bench {

/// How the window does with thousands of small libraries: while it reads them, and while an update replaces them one
/// after the other. Prints a row for each number of libraries, and appends its measures.
void measureManyLibraries(const std::vector<Entry>& entries, std::vector<Measure>& measures);

}  // namespace bench
