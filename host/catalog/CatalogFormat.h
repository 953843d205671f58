#pragma once

#include <cstdint>

namespace VelkHost {

/// The formats of catalog files. The numbers are stored in them.
enum class CatalogFormat : std::uint32_t {
    Names = 1,      ///< names, keywords, thumbnails and the names of files
    Properties = 2  ///< sizes and properties of items, too, and the library's licence, provider and version
};

constexpr CatalogFormat newestCatalogFormat = CatalogFormat::Properties;

}  // namespace VelkHost
