#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace VelkHost {

/// Writes a file in one step: whoever reads sees the old file or the new one. Throws CatalogError.
void writeWhole(const fileString& path, const std::string& bytes);

}  // namespace VelkHost
