#include <VelkLibrary/UI/ProgressText.h>

#include <VelkCommon/Text/FormatText.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkCommon/detail/Utf8.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>
#include <VelkLibrary/UI/detail/ProgressDisplayPreference.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

constexpr int amountDecimals = 9;

/// The catalog update puts file names in Windows-1252 into UTF-8 texts.
QString mixedText(std::string_view text)
{
    std::u32string result;
    while (!text.empty()) {
        const auto decoded = Velk::detail::decodeUtf8(text, Velk::detail::Surrogates::malformed);
        if (decoded.wellFormed)
            result += decoded.value;
        else
            result += StringConvert::fromWin1252(text.substr(0, decoded.length));
        text.remove_prefix(decoded.length);
    }
    return StringConvert::toQString(result);
}

QString displayed(std::string_view text)
{
    bool isUtf8 = false;
    const std::u32string result = StringConvert::toUnicodeFromUtf8(text, &isUtf8);
    return isUtf8 ? StringConvert::toQString(result) : mixedText(text);
}

}  // namespace

ProgressText::ProgressText(LibraryProgressPanel* panel)
    : QObject(panel), displayType_(Library::detail::readDisplayType())
{
    connect(this, &ProgressText::setLabelText, panel, &LibraryProgressPanel::setProgressLabelText,
            Qt::QueuedConnection);
    connect(this, &ProgressText::setRangeText, panel, &LibraryProgressPanel::setProgressRangeText,
            Qt::QueuedConnection);
}

ProgressText::~ProgressText() = default;

void ProgressText::setUnits(std::string units)
{
    const std::lock_guard lock(unitsMutex_);
    units_ = std::move(units);
}

void ProgressText::onPauseProcess()
{
    paused_ = true;
    describe();
}

void ProgressText::onResumeProcess()
{
    paused_ = false;
    describe();
}

void ProgressText::onSwitchDisplayType(ProgressDisplayType dispType)
{
    displayType_ = dispType;
    describe();
}

void ProgressText::onSetValue(int val)
{
    value_ = val;
    describe();
}

void ProgressText::onSetRange(int val)
{
    range_ = val;
    describe();
}

void ProgressText::onSetText(std::string text)
{
    text_ = std::move(text);
    describe();
}

void ProgressText::describe()
{
    rangeText_.clear();
    if (displayType_ == ProgressDisplayType::Percentage)
        rangeText_ = percentageText();
    else if (displayType_ == ProgressDisplayType::Amounts)
        rangeText_ = amountsText();
    Q_EMIT setLabelText(displayed(text_));
    Q_EMIT setRangeText(displayed(rangeText_));
}

std::string ProgressText::percentageText() const
{
    const std::int64_t done = std::min(value_, range_);
    return Velk::formatText(StringUtils::loadString(Velk::textNumbers::percentage),
                            range_ <= 0 ? 0 : done * 100 / range_);
}

std::string ProgressText::amountsText() const
{
    const std::string amounts = Velk::formatText(StringUtils::loadString(Velk::textNumbers::amounts),
                                                 formatWithThousandsSeparatorPrecision(value_, amountDecimals),
                                                 formatWithThousandsSeparatorPrecision(range_, amountDecimals));
    const std::string unit = units();
    return unit.empty() ? amounts : amounts + " " + unit;
}

std::string ProgressText::units() const
{
    const std::lock_guard lock(unitsMutex_);
    return units_;
}
