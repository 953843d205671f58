#pragma once

#include "host/support/ProgressLine.h"

#include <VelkLibrary/UpdateData.h>

#include <QObject>

#include <cstddef>
#include <string>

namespace VelkHost {

/// Shows the progress that the catalog update reports while "velk update" runs.
class UpdateReceiver : public QObject
{
    Q_OBJECT

public:
    explicit UpdateReceiver(Output& output);

    /// How many KB the update had to download, as far as the service told their size.
    std::size_t kilobytes() const noexcept { return kilobytes_; }

    /// Takes the progress off the terminal.
    void clear();

public Q_SLOTS:
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
    ProgressLine progress_;
    std::size_t range_ = 0;
    std::size_t kilobytes_ = 0;
};

}  // namespace VelkHost
