#include "host/browser/jobs/UpdateJob.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/browser/language/Reasons.h"
#include "host/support/QtText.h"

#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <exception>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace VelkHost {

UpdateJob::UpdateJob(std::string service, QObject* parent) : LibraryJob(parent), service_(std::move(service)) {}

UpdateJob::~UpdateJob()
{
    UpdateJob::cancel();
    if (updating_.joinable())
        updating_.join();
}

void UpdateJob::start(LibraryProgressPanel& panel)
{
    panel_ = &panel;
    updating_ = std::thread([this] { run(); });
}

void UpdateJob::cancel()
{
    stop_.request_stop();
}

void UpdateJob::onSetText(const std::string& text)
{
    if (panel_ != nullptr && !stop_.stop_requested())
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

// On the updating thread.
void UpdateJob::run()
{
    const UpdateCallbacks callbacks{
        [](const std::function<void()>& replace) {
            const std::unique_lock replacing(installedFiles());
            replace();
        },
        [this](const fileString& catalog) { post([this, catalog] { Q_EMIT installed(catalog); }); }};
    UpdateResult result;
    QString failure;
    try {
        UpdateRequest request;
        request.service = service_;
        result = updateLibraries(*this, request, callbacks, stop_.get_token());
    } catch (const std::exception& error) {
        failure = tr("The libraries cannot be updated: %1").arg(failureText(error));
    }
    post([this, result, failure] {
        updating_.join();
        if (failure.isEmpty())
            end(result);
        else
            Q_EMIT ended({failure, {}, false});
    });
}

void UpdateJob::end(const UpdateResult& result)
{
    for (const LibraryNews& news : result.news)
        if (news.what != LibraryNews::What::Installed)
            Library::ErrorLog() << "Unable to install catalog:  " << news.catalog << ": " << news.why.english() << "\n";
    // Several problems do not fit into a line.
    const QStringList told = problems(result);
    const QString message = told.size() == 1 ? outcomeText(result) + u' ' + told.front() : outcomeText(result);
    Q_EMIT ended({message.trimmed(), {}, result.outcome == UpdateOutcome::Failed || !told.isEmpty()});
}

QString UpdateJob::outcomeText(const UpdateResult& result)
{
    switch (result.outcome) {
        case UpdateOutcome::Cancelled:
            return (tr("The update was cancelled.") + u' ' + installedText(result)).trimmed();
        case UpdateOutcome::UpToDate:
            return tr("All libraries are up to date.");
        case UpdateOutcome::Installed:
            return installedText(result);
        default:
            break;
    }
    if (result.failure)
        return tr("The libraries cannot be updated: %1").arg(translated(*result.failure));
    return (tr("Not everything could be updated.") + u' ' + installedText(result)).trimmed();
}

QString UpdateJob::installedText(const UpdateResult& result)
{
    std::vector<fileString> catalogs;
    bool anyArchive = false;
    for (const LibraryNews& news : result.news) {
        if (news.what != LibraryNews::What::Installed)
            continue;
        if (news.catalog.hasExtension(Library::extensions::database))
            catalogs.push_back(news.catalog);
        else
            anyArchive = true;
    }
    if (catalogs.empty())
        return anyArchive ? tr("Files that libraries refer to were updated.") : QString();
    if (catalogs.size() == 1)
        return tr("“%1” was updated.").arg(qtText(catalogs.front().stem().utf8()));
    return tr("%Ln libraries were updated.", nullptr, static_cast<int>(catalogs.size()));
}

QStringList UpdateJob::problems(const UpdateResult& result)
{
    QStringList problems;
    for (const LibraryNews& news : result.news) {
        const QString name = qtText(news.catalog.stem().utf8());
        const QString why = translated(news.why);
        if (news.what == LibraryNews::What::Failed)
            problems.append(tr("“%1” is as it was: %2.").arg(name, why));
        else if (news.what == LibraryNews::What::NotServed)
            problems.append(tr("“%1” is not part of this service.").arg(name));
        else if (news.what == LibraryNews::What::Withdrawn)
            problems.append(why.isEmpty() ? tr("“%1” was withdrawn.").arg(name)
                                          : tr("“%1” was withdrawn: %2").arg(name, why));
    }
    return problems;
}

}  // namespace VelkHost
