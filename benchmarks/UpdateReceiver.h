#pragma once

#include <VelkLibrary/UpdateData.h>

#include <QObject>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace bench {

/// The host's end: the queued calls of a run arrive here.
class UpdateReceiver : public QObject
{
    Q_OBJECT

public:
    std::optional<std::int32_t> outcome;
    int installed = 0;

public Q_SLOTS:
    void onSetText(std::string) {}
    void onSetRangeInGauge(size_t) {}
    void onUpdateInGauge() {}
    void onSetValueInGauge(size_t) {}
    void onSetUnits(std::string) {}
    void onCatalogUpdatedEvent(FileStringPair) { ++installed; }
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data) { outcome = data.outcome; }
    void onClose() {}
};

}  // namespace bench
