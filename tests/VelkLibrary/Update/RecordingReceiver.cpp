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
        ADD_FAILURE() << "the last event is not a final one";
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
    record({.slot = "onSetText", .text = std::move(text)});
}

void RecordingReceiver::onSetRangeInGauge(size_t range)
{
    record({.slot = "onSetRangeInGauge", .number = range});
}

void RecordingReceiver::onUpdateInGauge()
{
    record({.slot = "onUpdateInGauge"});
}

void RecordingReceiver::onSetValueInGauge(size_t value)
{
    record({.slot = "onSetValueInGauge", .number = value});
}

void RecordingReceiver::onSetUnits(std::string unit_string)
{
    record({.slot = "onSetUnits", .text = std::move(unit_string)});
}

void RecordingReceiver::onCatalogUpdatedEvent(FileStringPair paths)
{
    record({.slot = "onCatalogUpdatedEvent", .paths = std::move(paths)});
}

void RecordingReceiver::closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data)
{
    record({.slot = "closeCatalogUpdateEvent", .data = data});
}

void RecordingReceiver::onClose()
{
    record({.slot = "onClose"});
}

void RecordingReceiver::record(Event event)
{
    event.thread = std::this_thread::get_id();
    events_.push_back(std::move(event));
    if (reaction)
        reaction(events_.back());
}

}  // namespace test
