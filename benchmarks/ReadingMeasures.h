#pragma once

#include "host/catalog/Catalog.h"

namespace bench {

/// Prints how long it takes to read the names of a catalog from its file, beside SQLite alone, which goes through the
/// same rows and keeps nothing. Whether what was read is the catalog.
bool printReading(const VelkHost::Catalog& catalog);

}  // namespace bench
