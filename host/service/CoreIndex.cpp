#include "host/service/CoreIndex.h"

namespace VelkHost {

std::vector<std::string> coreIndexNames()
{
    std::vector<std::string> names;
    for (const char* edition : {"Standard"})
        names.push_back(std::string(edition) + "_Core_Content_Index.txt");
    return names;
}

}  // namespace VelkHost
