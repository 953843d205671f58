#include <VelkCommon/HostServices.h>

#include <VelkCommon/Reporting/PreferenceEngine.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <mutex>
#include <utility>

namespace Velk {
namespace {

struct Installed
{
    std::mutex mutex;
    std::shared_ptr<const HostServices> services = std::make_shared<const HostServices>();
};

Installed& installed()
{
    static detail::NeverDestroyed<Installed> state;
    return *state;
}

}  // namespace

void installHost(HostServices services)
{
    auto next = std::make_shared<const HostServices>(std::move(services));
    useApplication(next->application);
    PreferenceEngine::getThePrefs().adopt(next->preferences);
    const std::lock_guard lock(installed().mutex);
    installed().services = std::move(next);
}

std::shared_ptr<const HostServices> host()
{
    const std::lock_guard lock(installed().mutex);
    return installed().services;
}

}  // namespace Velk
