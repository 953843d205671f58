#include <VelkCommon/Imaging/QTUtils.h>

#include "Pictures.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(QTUtilsTest, PaintsThroughADeviceContext)
{
    QImage picture = plainPicture(8, 8, Qt::white);
    QPainter painter(&picture);
    const GDI::Dc context(painter);
    const GDI::Dc copy = context;
    EXPECT_EQ(&QTUtils::getPainter(context), &painter);
    EXPECT_EQ(&QTUtils::getPainter(copy), &painter);
    QTUtils::getPainter(context).fillRect(QRect(QTUtils::iPointToQPoint(tPoint<int>(2, 3)), QSize(2, 1)), Qt::red);
    painter.end();
    EXPECT_EQ(picture.pixelColor(2, 3), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(3, 3), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(3, 2), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(4, 3), QColor(Qt::white));
}

TEST(QTUtilsTest, PointsKeepTheirCoordinates)
{
    constexpr int greatest = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    EXPECT_EQ(QTUtils::iPointToQPoint(tPoint<int>()), QPoint(0, 0));
    EXPECT_EQ(QTUtils::iPointToQPoint(tPoint<int>(3, -4)), QPoint(3, -4));
    EXPECT_EQ(QTUtils::iPointToQPoint(tPoint<int>(greatest, least)), QPoint(greatest, least));
}

TEST(TPointTest, IsAValue)
{
    const tPoint<int> point(3, -4);
    const tPoint<int> copy = point;
    EXPECT_EQ(copy.x, 3);
    EXPECT_EQ(copy.y, -4);
    EXPECT_EQ(copy, point);
    EXPECT_NE(point, tPoint<int>(-4, 3));
}

}  // namespace
