#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include <VelkCommon/detail/NeverDestroyed.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <mutex>

using Library::detail::catalogUpdateMutex;

namespace LibraryCatalogUpdate::detail {

// Never destroyed: a worker may still use it while the process ends.
CatalogUpdateState& CatalogUpdateState::get()
{
    static Velk::detail::NeverDestroyed<CatalogUpdateState> state([] { return CatalogUpdateState(); });
    return *state;
}

void CatalogUpdateState::begin(const std::string& serviceAddress)
{
    const std::lock_guard lock(catalogUpdateMutex);
    serviceAddress_ = serviceAddress;
    endpoint_.clear();
    endpointFault_ = {};
    cancelled_ = false;
}

void CatalogUpdateState::cancel()
{
    const std::lock_guard lock(catalogUpdateMutex);
    cancelled_ = true;
}

bool CatalogUpdateState::cancelled() const
{
    const std::lock_guard lock(catalogUpdateMutex);
    return cancelled_;
}

std::string CatalogUpdateState::serviceAddress() const
{
    const std::lock_guard lock(catalogUpdateMutex);
    return serviceAddress_;
}

std::string CatalogUpdateState::endpoint() const
{
    const std::lock_guard lock(catalogUpdateMutex);
    return endpoint_;
}

void CatalogUpdateState::setEndpoint(const std::string& endpoint, const RunFault& fault)
{
    const std::lock_guard lock(catalogUpdateMutex);
    endpoint_ = endpoint;
    endpointFault_ = fault;
}

RunFault CatalogUpdateState::endpointFault() const
{
    const std::lock_guard lock(catalogUpdateMutex);
    return endpointFault_;
}

}  // namespace LibraryCatalogUpdate::detail
