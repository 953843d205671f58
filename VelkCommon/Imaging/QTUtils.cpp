#include <VelkCommon/Imaging/QTUtils.h>

QPainter& QTUtils::getPainter(const GDI::Dc& context) noexcept
{
    return context.painter();
}

QPoint QTUtils::iPointToQPoint(const tPoint<int>& point) noexcept
{
    return {point.x, point.y};
}
