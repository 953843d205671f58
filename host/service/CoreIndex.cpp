#include "host/service/CoreIndex.h"

#include <VelkCommon/HostServices.h>

namespace VelkHost {

std::vector<std::string> coreIndexNames()
{
    std::vector<std::string> names;
    for (const std::string& word : Velk::host()->editions.words)
        names.push_back(word + "_Core_Content_Index.txt");
    return names;
}

}  // namespace VelkHost
