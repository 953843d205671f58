#pragma once

#include <VelkLibrary/UpdateData.h>

#include <QObject>

#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace test {

/// One call of a slot.
struct Event
{
    std::string slot = {};
    std::string text = {};   ///< with texts and units
    std::size_t number = 0;  ///< with ranges and values
    FileStringPair paths = {};
    LibraryCatalogUpdate::UpdateData data = {};
    std::thread::id thread = {};

    /// "onSetText Checking catalogs", "onSetRangeInGauge 3", "onCatalogUpdatedEvent plants.calib".
    std::string summary() const;
};

/// A host's receiver that writes down what it is told, in order.
class RecordingReceiver : public QObject
{
    Q_OBJECT

public:
    const std::vector<Event>& events() const noexcept { return events_; }
    std::vector<std::string> summaries() const;
    /// The last event, which must be the final one.
    const Event& finalEvent() const;
    /// How often a slot was called.
    std::size_t count(const std::string& slot) const;
    /// Called at each call of a slot, after that was written down.
    std::function<void(const Event& event)> reaction;

public Q_SLOTS:
    void onSetText(std::string text);
    void onSetRangeInGauge(size_t range);
    void onUpdateInGauge();
    void onSetValueInGauge(size_t value);
    void onSetUnits(std::string unit_string);
    void onCatalogUpdatedEvent(FileStringPair paths);
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data);
    void onClose();

private:
    void record(Event event);

    std::vector<Event> events_;
};

}  // namespace test
