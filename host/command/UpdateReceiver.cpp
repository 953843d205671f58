#include "host/command/UpdateReceiver.h"

#include <VelkCommon/Text/StringConvert.h>

namespace VelkHost {

UpdateReceiver::UpdateReceiver(Output& output) : progress_(output) {}

void UpdateReceiver::clear()
{
    progress_.clear();
}

void UpdateReceiver::onSetText(const std::string& text)
{
    progress_.setText(StringConvert::toStdUtf8String(StringConvert::fromWin1252(text)));
}

void UpdateReceiver::onSetRangeInGauge(size_t range)
{
    range_ = range;
    progress_.begin(range);
}

void UpdateReceiver::onUpdateInGauge()
{
    progress_.step();
}

void UpdateReceiver::onSetValueInGauge(size_t value)
{
    progress_.setValue(value);
}

// Only the progress of the downloads has a unit.
void UpdateReceiver::onSetUnits(const std::string& unit_string)
{
    kilobytes_ = range_;
    progress_.begin(range_, unit_string);
}

}  // namespace VelkHost
