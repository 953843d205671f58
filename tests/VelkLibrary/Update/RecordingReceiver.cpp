#include "VelkLibrary/Update/RecordingReceiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace test {

std::string Event::summary() const
{
    if (slot == "onSetText" || slot == "onSetUnits")
        return slot + " " + text;
    if (slot == "onSetRangeInGauge" || slot == "onSetValueInGauge")
        return slot + " " + std::to_string(number);
    if (slot == "onCatalogUpdatedEvent")
        return slot + " " + paths.first.stemWithExtension().utf8();
    return slot;
}

std::vector<std::string> RecordingReceiver::summaries() const
{
    std::vector<std::string> result;
    for (const Event& event : events_)
        result.push_back(event.summary());
    return result;
}

const Event& RecordingReceiver::finalEvent() const
{
    static const Event none;
    const auto isFinal = [](const Event& event) {
        return event.slot == "closeCatalogUpdateEvent" || event.slot == "onClose";
    };
    EXPECT_EQ(std::count_if(events_.begin(), events_.end(), isFinal), 1) << "not exactly one final event";
    if (events_.empty() || !isFinal(events_.back())) {
        ADD_FAILURE() << "the last event is no final one";
        return none;
    }
    return events_.back();
}

std::size_t RecordingReceiver::count(const std::string& slot) const
{
    return static_cast<std::size_t>(
        std::count_if(events_.begin(), events_.end(), [&](const Event& event) { return event.slot == slot; }));
}

void RecordingReceiver::onSetText(std::string text)
{
    Event event;
    event.slot = "onSetText";
    event.text = std::move(text);
    record(std::move(event));
}

void RecordingReceiver::onSetRangeInGauge(size_t range)
{
    Event event;
    event.slot = "onSetRangeInGauge";
    event.number = range;
    record(std::move(event));
}

void RecordingReceiver::onUpdateInGauge()
{
    Event event;
    event.slot = "onUpdateInGauge";
    record(std::move(event));
}

void RecordingReceiver::onSetValueInGauge(size_t value)
{
    Event event;
    event.slot = "onSetValueInGauge";
    event.number = value;
    record(std::move(event));
}

void RecordingReceiver::onSetUnits(std::string unit_string)
{
    Event event;
    event.slot = "onSetUnits";
    event.text = std::move(unit_string);
    record(std::move(event));
}

void RecordingReceiver::onCatalogUpdatedEvent(FileStringPair paths)
{
    Event event;
    event.slot = "onCatalogUpdatedEvent";
    event.paths = std::move(paths);
    record(std::move(event));
}

void RecordingReceiver::closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data)
{
    Event event;
    event.slot = "closeCatalogUpdateEvent";
    event.data = data;
    record(std::move(event));
}

void RecordingReceiver::onClose()
{
    Event event;
    event.slot = "onClose";
    record(std::move(event));
}

void RecordingReceiver::record(Event event)
{
    event.thread = std::this_thread::get_id();
    events_.push_back(std::move(event));
    if (reaction)
        reaction(events_.back());
}

}  // namespace test
