#include <VelkLibrary/UI/ProgressGauge.h>

#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkLibrary/UI/ProgressText.h>
#include <VelkLibrary/UI/detail/ProgressDisplayPreference.h>

#include <QMetaObject>
#include <QMouseEvent>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

namespace {

ProgressDisplayType nextDisplayType(ProgressDisplayType type)
{
    switch (type) {
        case ProgressDisplayType::BarOnly:
            return ProgressDisplayType::Percentage;
        case ProgressDisplayType::Percentage:
            return ProgressDisplayType::Amounts;
        case ProgressDisplayType::Amounts:
            return ProgressDisplayType::BarOnly;
    }
    return type;
}

std::optional<unsigned int> toolTipText(ProgressDisplayType type)
{
    switch (type) {
        case ProgressDisplayType::BarOnly:
            return Velk::textNumbers::barOnlyToolTip;
        case ProgressDisplayType::Percentage:
            return Velk::textNumbers::percentageToolTip;
        case ProgressDisplayType::Amounts:
            return Velk::textNumbers::amountsToolTip;
    }
    return std::nullopt;
}

int limitedSum(std::int64_t left, std::int64_t right)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(left + right, Limits::min(), Limits::max()));
}

}  // namespace

ProgressGauge::ProgressGauge(QWidget* panel, ProgressText* text)
    : QProgressBar(panel), displayType_(Library::detail::readDisplayType()), text_(text)
{
    setMinimum(0);
    setMaximum(100);
    setValue(0);
    setTextVisible(false);
    setContentsMargins(0, 0, 0, 0);
    qRegisterMetaType<ProgressDisplayType>("ProgressDisplayType");
    refreshToolTip();
}

ProgressGauge::~ProgressGauge() = default;

void ProgressGauge::onUpdate()
{
    // A bar that Qt has reset stands below its minimum.
    const int reached = std::max(value(), minimum());
    if (reached >= maximum())
        return;
    onSetValue(reached + 1);
}

void ProgressGauge::onSetValue(int size)
{
    setValue(size);
    if (text_ != nullptr)
        QMetaObject::invokeMethod(text_, "onSetValue", Qt::QueuedConnection, Q_ARG(int, size));
}

void ProgressGauge::onSetRange(int size)
{
    setMaximum(limitedSum(minimum(), size));
    if (text_ != nullptr)
        QMetaObject::invokeMethod(text_, "onSetRange", Qt::QueuedConnection, Q_ARG(int, size));
}

void ProgressGauge::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        switchDisplayType();
    event->ignore();
}

void ProgressGauge::switchDisplayType()
{
    displayType_ = nextDisplayType(displayType_);
    Library::detail::writeDisplayType(displayType_);
    refreshToolTip();
    if (text_ != nullptr) {
        QMetaObject::invokeMethod(text_, "onSwitchDisplayType", Qt::QueuedConnection,
                                  Q_ARG(ProgressDisplayType, displayType_));
    }
}

void ProgressGauge::refreshToolTip()
{
    if (const auto text = toolTipText(displayType_))
        setToolTip(StringUtils::loadQString(*text));
}
