#pragma once

#include "host/catalog/Languages.h"

namespace VelkHost {

/// A small library to try things with: some forty items of a house in nested folders, with drawn
/// thumbnails, named in English or, with the language "de", in German. Throws FileError for any other
/// language.
Catalog sampleLibrary(const BuildOptions& options);

}  // namespace VelkHost
