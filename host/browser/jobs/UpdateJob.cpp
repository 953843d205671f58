#include "host/browser/jobs/UpdateJob.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/language/Reasons.h"
#include "host/installation/CatalogUpdate.h"
#include "host/support/QtText.h"

#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <exception>
#include <mutex>
#include <new>
#include <utility>

using LibraryCatalogUpdate::LibraryCatalogUpdater;

namespace VelkHost {

UpdateJob::UpdateJob(std::string service, QObject* parent) : LibraryJob(parent), service_(std::move(service)) {}

UpdateJob::~UpdateJob()
{
    if (updating_.joinable()) {  // otherwise the cancelling would hit the next job
        UpdateJob::cancel();
        updating_.join();
    }
}

void UpdateJob::start(LibraryProgressPanel& panel)
{
    panel_ = &panel;
    updating_ = std::thread([this] { run(); });
}

void UpdateJob::cancel()
{
    cancelled_ = true;
    LibraryCatalogUpdater::killDownload();
}

void UpdateJob::onSetText(const std::string& text)
{
    if (panel_ != nullptr && !cancelled_)
        panel_->onSetText(text);
}

void UpdateJob::onSetRangeInGauge(size_t range)
{
    if (panel_ == nullptr)
        return;
    panel_->onSetRangeInGauge(range);
    panel_->onSetValueInGauge(0);  // another phase begins
}

void UpdateJob::onUpdateInGauge()
{
    if (panel_ != nullptr)
        panel_->onUpdateInGauge();
}

void UpdateJob::onSetValueInGauge(size_t value)
{
    if (panel_ != nullptr)
        panel_->onSetValueInGauge(value);
}

void UpdateJob::onSetUnits(const std::string& unit_string)
{
    if (panel_ != nullptr)
        panel_->onSetUnits(unit_string);
}

void UpdateJob::onCatalogUpdatedEvent(const FileStringPair& paths)
{
    installing_.run([this, paths] { return install(paths); });
}

void UpdateJob::closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data)
{
    report_ = data;
    onClose();
}

void UpdateJob::onClose()
{
    if (!std::exchange(ending_, true))
        installing_.run([this] { return finishInstalling(); });
}

// On the updating thread. Making the updater forgets an earlier cancel(), so that is repeated.
void UpdateJob::run()
{
    QString failure;
    try {
        const InstalledCatalogs catalogs = installedCatalogs();
        LibraryCatalogUpdater updater(*this, catalogs.core, catalogs.bonus, catalogs.manufacturer, updateProduct,
                                      updateVersion, service_, false);
        if (cancelled_)
            LibraryCatalogUpdater::killDownload();
        updater();
        return;
    } catch (const std::exception& error) {
        failure = failureText(error);
    }
    post([this, failure] {
        if (!std::exchange(ending_, true))
            endWith(tr("The libraries cannot be updated: %1").arg(failure), false);
    });
}

// On the installing thread, like the functions below.
Worker::Arrival UpdateJob::install(const FileStringPair& paths)
{
    try {
        const std::unique_lock replacing(installedFiles());
        if (installer_.install(paths))
            return [this, library = paths.first] { Q_EMIT installed(library); };
    } catch (const std::bad_alloc&) {
        outOfMemory_ = true;
    }
    return {};
}

Worker::Arrival UpdateJob::finishInstalling()
{
    try {
        installer_.finish();
        for (const CatalogInstaller::Failure& failure : installer_.failures())
            Library::ErrorLog() << "Unable to install catalog:  " << failure.catalog << ": " << failure.reason << "\n";
    } catch (const std::bad_alloc&) {
        outOfMemory_ = true;
    }
    return [this] { end(); };
}

void UpdateJob::end()
{
    const UpdateOutcome outcome = updateOutcome(report_, installer_);
    endWith(outcomeText(), outcome == UpdateOutcome::Failed);
}

void UpdateJob::endWith(const QString& message, bool hasLogged)
{
    updating_.join();
    Q_EMIT ended({message, {}, hasLogged});
}

QString UpdateJob::outcomeText() const
{
    const UpdateOutcome outcome = updateOutcome(report_, installer_);
    if (outcome == UpdateOutcome::Cancelled)
        return (tr("The update was cancelled.") + u' ' + installedText()).trimmed();
    if (outOfMemory_)
        return tr("There is too little memory to update all libraries.");
    if (outcome == UpdateOutcome::UpToDate)
        return tr("All libraries are up to date.");
    if (outcome == UpdateOutcome::Installed)
        return installer_.installed().empty() ? tr("Files that libraries refer to were updated.") : installedText();
    if (report_->resultCode == LibraryCatalogUpdate::EndpointUnknown)
        return tr("The content service cannot be reached.");
    return (tr("Not everything could be updated.") + u' ' + installedText()).trimmed();
}

QString UpdateJob::installedText() const
{
    const std::vector<fileString>& catalogs = installer_.installed();
    if (catalogs.empty())
        return {};
    if (catalogs.size() == 1)
        return tr("“%1” was updated.").arg(qtText(catalogs.front().stem().utf8()));
    return tr("%Ln libraries were updated.", nullptr, static_cast<int>(catalogs.size()));
}

}  // namespace VelkHost
