#include "host/support/ProgressLine.h"

#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>

namespace VelkHost {
namespace {

constexpr std::size_t barWidth = 20;
constexpr std::chrono::milliseconds betweenLooks{100};
constexpr const char* eraseLine = "\r\x1b[K";

std::string bar(std::uint64_t value, std::uint64_t range)
{
    const double part = range == 0 ? 0.0 : static_cast<double>(std::min(value, range)) / static_cast<double>(range);
    const auto filled = static_cast<std::size_t>(part * static_cast<double>(barWidth));
    return std::string("[").append(filled, '#').append(barWidth - filled, '.').append("]");
}

std::string grouped(double value)
{
    return formatWithThousandsSeparatorPrecision(value, 0);
}

}  // namespace

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::setText(const std::string& text)
{
    text_ = text;
    show(false);
}

void ProgressLine::begin(std::uint64_t range, const std::string& unit)
{
    range_ = range;
    unit_ = unit;
    value_ = 0;
    firstMoved_ = {};
    // The text is set next, and should be seen at once.
    shown_ = {};
}

void ProgressLine::setValue(std::uint64_t value)
{
    value_ = value;
    if (firstMoved_ == Clock::time_point()) {
        firstMoved_ = Clock::now();
        firstValue_ = value;
    }
    show(value_ >= range_);
}

void ProgressLine::clear()
{
    if (visible_)
        output_.write(eraseLine);
    visible_ = false;
}

void ProgressLine::show(bool always)
{
    const Clock::time_point now = Clock::now();
    if (!output_.styles() || output_.columns() < 2 || (!always && visible_ && now - shown_ < betweenLooks))
        return;
    shown_ = now;
    visible_ = true;
    StyledText line{printable(range_ == 0 ? text_ : text_ + "  " + bar(value_, range_) + " " + amounts()), {}};
    line.bold.resize(line.text.size());
    output_.write(eraseLine + render(cutToWidth(std::move(line), output_.columns() - 1), false));
}

std::string ProgressLine::amounts() const
{
    std::string text =
        grouped(static_cast<double>(std::min(value_, range_))) + " of " + grouped(static_cast<double>(range_));
    if (unit_.empty())
        return text;
    text += " " + unit_;
    const std::chrono::duration<double> passed = Clock::now() - firstMoved_;
    if (firstMoved_ != Clock::time_point() && passed.count() > 0.5 && value_ > firstValue_)
        text += ", " + grouped(static_cast<double>(value_ - firstValue_) / passed.count()) + " " + unit_ + "/s";
    return text;
}

}  // namespace VelkHost
