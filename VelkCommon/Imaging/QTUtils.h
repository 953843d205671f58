#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Imaging/GDI.h>
#include <VelkCommon/Imaging/tPoint.h>

#include <QPainter>
#include <QPoint>

/// From the host's drawing types to those of Qt.
class VELKCOMMON_EXPORT QTUtils
{
public:
    QTUtils() = delete;

    /// The painter behind a device context.
    static QPainter& getPainter(const GDI::Dc& context) noexcept;

    /// The same coordinates.
    static QPoint iPointToQPoint(const tPoint<int>& point) noexcept;
};
