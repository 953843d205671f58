#pragma once

#include "host/browser/jobs/LibraryJob.h"
#include "host/installation/LibraryUpdate.h"

#include <VelkLibrary/UpdateData.h>

#include <QPointer>
#include <QStringList>

#include <stop_token>
#include <string>
#include <thread>

namespace VelkHost {

/// Brings the installed libraries up to date with a content service.
class UpdateJob : public LibraryJob
{
    Q_OBJECT

public:
    /// `service` is the service's address, UTF-8.
    explicit UpdateJob(std::string service, QObject* parent = nullptr);
    ~UpdateJob() override;

    void start(LibraryProgressPanel& panel) override;
    void cancel() override;

public Q_SLOTS:
    // Called by the catalog update. The progress is passed on to the panel.
    void onSetText(const std::string& text);
    void onSetRangeInGauge(size_t range);
    void onUpdateInGauge();
    void onSetValueInGauge(size_t value);
    void onSetUnits(const std::string& unit_string);
    // What these tell comes from the update itself as well, with the reasons.
    void onCatalogUpdatedEvent(const FileStringPair&) {}
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData&) {}
    void onClose() {}

private:
    void run();
    void end(const UpdateResult& result);
    static QString outcomeText(const UpdateResult& result);
    static QString installedText(const UpdateResult& result);
    static QStringList problems(const UpdateResult& result);

    const std::string service_;
    QPointer<LibraryProgressPanel> panel_;
    std::stop_source stop_;
    std::thread updating_;
};

}  // namespace VelkHost
