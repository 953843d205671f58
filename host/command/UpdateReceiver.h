#pragma once

#include "host/installation/CatalogInstaller.h"
#include "host/support/ProgressLine.h"

#include <VelkLibrary/UpdateData.h>

#include <QObject>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace VelkHost {

/// What the catalog update calls while "velk update" runs: shows the progress, installs new databases, and
/// keeps the outcome.
class UpdateReceiver : public QObject
{
    Q_OBJECT

public:
    /// `finished` is called after the final event.
    UpdateReceiver(Output& output, std::function<void()> finished);

    /// The report of a run that was not cancelled.
    const std::optional<LibraryCatalogUpdate::UpdateData>& report() const noexcept { return report_; }
    const CatalogInstaller& installer() const noexcept { return installer_; }
    /// How many KB the update had to download, as far as the service told their size.
    std::size_t kilobytes() const noexcept { return kilobytes_; }

public Q_SLOTS:
    void onSetText(const std::string& text);
    void onSetRangeInGauge(size_t range);
    void onUpdateInGauge();
    void onSetValueInGauge(size_t value);
    void onSetUnits(const std::string& unit_string);
    void onCatalogUpdatedEvent(const FileStringPair& paths);
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data);
    void onClose();

private:
    void end();

    CatalogInstaller installer_;
    ProgressLine progress_;
    std::function<void()> finished_;
    std::optional<LibraryCatalogUpdate::UpdateData> report_;
    std::size_t range_ = 0;
    std::size_t kilobytes_ = 0;
};

}  // namespace VelkHost
