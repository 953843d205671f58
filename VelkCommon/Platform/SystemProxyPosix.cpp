#include <VelkCommon/Platform/SystemProxy.h>

namespace Velk::Platform {

std::string systemProxy(const std::string&, const std::function<bool()>&)
{
    return {};
}

}  // namespace Velk::Platform
