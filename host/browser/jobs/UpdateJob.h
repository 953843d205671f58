#pragma once

#include "host/browser/Worker.h"
#include "host/browser/jobs/LibraryJob.h"
#include "host/installation/CatalogInstaller.h"

#include <VelkLibrary/UpdateData.h>

#include <QPointer>

#include <atomic>
#include <optional>
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
    // Installs on another thread: reading a database of a million items takes seconds.
    void onCatalogUpdatedEvent(const FileStringPair& paths);
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data);
    void onClose();

private:
    void run();
    Worker::Arrival install(const FileStringPair& paths);
    Worker::Arrival finishInstalling();
    void end();
    void endWith(const QString& message, bool hasLogged);
    QString outcomeText() const;
    QString installedText() const;

    const std::string service_;
    QPointer<LibraryProgressPanel> panel_;
    std::atomic<bool> cancelled_ = false;
    std::atomic<bool> outOfMemory_ = false;
    std::optional<LibraryCatalogUpdate::UpdateData> report_;
    CatalogInstaller installer_;  // the installing thread's until everything is installed
    bool ending_ = false;
    Worker installing_;
    std::thread updating_;
};

}  // namespace VelkHost
