#include "host/service/WholeFile.h"

#include "host/catalog/CatalogError.h"

#include <VelkCommon/Files/ReplacementFile.h>

namespace VelkHost {

void writeWhole(const fileString& path, const std::string& bytes)
{
    ReplacementFile file(path);
    if (!file.write(bytes) || !file.commit())
        throw CatalogError(path, "cannot be written; is the disk full?");
}

}  // namespace VelkHost
