#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Imaging/GDI.h>
#include <VelkCommon/Imaging/tPoint.h>

#include <QPainter>
#include <QPoint>

/// Converts the host's drawing types to those of Qt.
class VELKCOMMON_EXPORT QTUtils
{
public:
    QTUtils() = delete;

    /// The painter behind a device context.
    static QPainter& getPainter(const GDI::Dc& context) noexcept;

    /// The point with the same coordinates.
    static QPoint iPointToQPoint(const tPoint<int>& point) noexcept;
};
