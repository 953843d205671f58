#pragma once

#include "host/catalog/CatalogFormat.h"
#include "host/catalog/Languages.h"

#include <cstddef>
#include <optional>
#include <string>

namespace VelkHost {

/// A catalog as it was written.
struct BuiltCatalog
{
    fileString path;
    std::string name;
    std::string language;
    std::size_t items = 0;
    std::size_t folders = 0;
    std::size_t thumbnails = 0;
    long long bytes = 0;

    /// "sample.calib: Sample house (en), 40 items in 17 folders, 40 thumbnails, 75 KB". UTF-8.
    std::string summary() const;
};

/// Reads a furniture library (a zip archive, whatever its name) or comma-separated values, and writes
/// the ".calib" file, without a format in the oldest one that holds all of it. Throws FileError.
BuiltCatalog buildCatalog(const fileString& source, const fileString& target, const BuildOptions& options,
                          std::optional<CatalogFormat> format = {});

/// Writes the sample library in the same way. Throws FileError.
BuiltCatalog buildSample(const fileString& target, const BuildOptions& options,
                         std::optional<CatalogFormat> format = {});

}  // namespace VelkHost
