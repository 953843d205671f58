#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <utility>
#include <vector>

namespace VelkHost {

/// Packs `catalog` as "<stem of target>.calib" into `target` (".calibz"), together with the entries of a furniture
/// library that its items use, which stay compressed as they are. `target` appears whole or not at all. Throws
/// FileError.
void packWithFurniture(const fileString& catalog, const fileString& furniture, const fileString& target);

/// The same with files given by name and bytes.
void packWithFiles(const fileString& catalog, const std::vector<std::pair<std::string, std::string>>& files,
                   const fileString& target);

}  // namespace VelkHost
