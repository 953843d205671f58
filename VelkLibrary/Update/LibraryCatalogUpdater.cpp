#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <VelkLibrary/Update/detail/CatalogJob.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include <utility>

namespace LibraryCatalogUpdate {

LibraryCatalogUpdater::LibraryCatalogUpdater(QObject& receiver, const std::set<fileString>& coreCatalogs,
                                             const std::set<fileString>& bonusCatalogs,
                                             const std::set<fileString>& manufacturerCatalogs,
                                             const std::string& product, const std::string& version,
                                             const std::string& serviceAddress, bool manual)
    : LibraryProgressBase(receiver),
      job_(std::make_shared<detail::CatalogJob>(
          detail::CatalogJobSettings{coreCatalogs, bonusCatalogs, manufacturerCatalogs, product, version, manual}))
{
    detail::CatalogUpdateState::get().begin(serviceAddress);
}

LibraryCatalogUpdater::~LibraryCatalogUpdater() = default;
LibraryCatalogUpdater::LibraryCatalogUpdater(const LibraryCatalogUpdater&) = default;
LibraryCatalogUpdater::LibraryCatalogUpdater(LibraryCatalogUpdater&&) noexcept = default;
LibraryCatalogUpdater& LibraryCatalogUpdater::operator=(const LibraryCatalogUpdater&) = default;
LibraryCatalogUpdater& LibraryCatalogUpdater::operator=(LibraryCatalogUpdater&&) noexcept = default;

void LibraryCatalogUpdater::operator()()
{
    job_->run(*this);
}

void LibraryCatalogUpdater::setHooks(RunHooks hooks)
{
    job_->setHooks(std::move(hooks));
}

const RunReport& LibraryCatalogUpdater::report() const noexcept
{
    return job_->report();
}

void LibraryCatalogUpdater::killDownload()
{
    detail::CatalogUpdateState::get().cancel();
}

}  // namespace LibraryCatalogUpdate
