#include <VelkCommon/Reporting/applicationManager.h>

#include <VelkCommon/detail/NeverDestroyed.h>

namespace {

class DefaultApplication final : public applicationManager
{
public:
    std::string getInstanceName() const override { return "velk"; }
};

DefaultApplication& defaultApplication()
{
    static Velk::detail::NeverDestroyed<DefaultApplication> application;
    return *application;
}

}  // namespace

applicationManager::~applicationManager() = default;

applicationManager* gApp = &defaultApplication();

namespace Velk {

void useApplication(applicationManager* application) noexcept
{
    gApp = application != nullptr ? application : &defaultApplication();
}

}  // namespace Velk
