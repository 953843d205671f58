#include <VelkCommon/HostServices.h>

#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <mutex>
#include <utility>

namespace Velk {
namespace {

// Never destroyed: code that runs while the process ends may still ask.
struct Installed
{
    std::mutex mutex;
    std::shared_ptr<const HostServices> services = std::make_shared<const HostServices>();
};

Installed& installed()
{
    static Installed& state = *new Installed;
    return state;
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
