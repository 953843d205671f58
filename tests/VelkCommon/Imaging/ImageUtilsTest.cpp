#include <VelkCommon/Imaging/ImageUtils.h>

#include "Pictures.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <limits>

namespace {

struct Resizing
{
    const char* name;
    QSize from;
    int width;
    int height;
    bool keepAspectRatio;
    QSize to;
};

class Resize : public testing::TestWithParam<Resizing>
{};

TEST_P(Resize, GivesTheSize)
{
    ImageObj image(plainPicture(GetParam().from.width(), GetParam().from.height(), Qt::red));
    EXPECT_TRUE(ImageUtils::resize(image.edit(), GetParam().width, GetParam().height, GetParam().keepAspectRatio));
    EXPECT_EQ(image.getSize(), GetParam().to);
    EXPECT_EQ(image.image().pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.image().pixelColor(image.getSize().width() - 1, image.getSize().height() - 1), QColor(Qt::red));
}

const Resizing resizings[] = {
    {"Smaller", {40, 20}, 10, 10, false, {10, 10}},
    {"Larger", {4, 2}, 100, 30, false, {100, 30}},
    {"Same", {40, 20}, 40, 20, false, {40, 20}},
    {"KeptByWidth", {40, 20}, 10, 10, true, {10, 5}},
    {"KeptByHeight", {20, 40}, 10, 10, true, {5, 10}},
    {"KeptLarger", {4, 2}, 100, 100, true, {100, 50}},
    {"KeptThin", {1, 1000}, 10, 10, true, {1, 10}},
    {"KeptFlat", {1000, 1}, 10, 10, true, {10, 1}},
    {"OnePixel", {40, 20}, 1, 1, false, {1, 1}},
    {"LongestSide", {2, 2}, ImageUtils::longestSide, 1, false, {ImageUtils::longestSide, 1}},
};
INSTANTIATE_TEST_SUITE_P(Rows, Resize, testing::ValuesIn(resizings), [](const auto& row) { return row.param.name; });

class ResizeRefused : public testing::TestWithParam<std::pair<int, int>>
{};

TEST_P(ResizeRefused, ChangesNothing)
{
    const QImage picture = plainPicture(4, 2, Qt::red);
    for (const bool keepAspectRatio : {false, true}) {
        ImageObj image(picture);
        EXPECT_FALSE(ImageUtils::resize(image.edit(), GetParam().first, GetParam().second, keepAspectRatio));
        EXPECT_EQ(image.image(), picture);
    }
}

constexpr int greatest = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();
INSTANTIATE_TEST_SUITE_P(Sizes, ResizeRefused,
                         testing::Values(std::pair(0, 10), std::pair(10, 0), std::pair(-1, 10), std::pair(10, -1),
                                         std::pair(least, least), std::pair(greatest, greatest), std::pair(1, greatest),
                                         std::pair(ImageUtils::longestSide + 1, 1),
                                         std::pair(1, ImageUtils::longestSide + 1)));

TEST(ImageUtilsTest, ResizeRefusesAnImageThatIsNotValid)
{
    ImageObj image;
    EXPECT_FALSE(ImageUtils::resize(image.edit(), 10, 10, false));
    EXPECT_FALSE(image.valid());
}

TEST(ImageUtilsTest, ResizeIsSmooth)
{
    QImage stripes(20, 20, QImage::Format_RGB32);
    stripes.fill(Qt::white);
    for (int x = 0; x < 20; x += 2)
        for (int y = 0; y < 20; ++y)
            stripes.setPixelColor(x, y, Qt::black);
    ImageObj image(stripes);
    ASSERT_TRUE(ImageUtils::resize(image.edit(), 10, 10, false));
    const int grey = image.image().pixelColor(5, 5).red();
    EXPECT_GT(grey, 100);
    EXPECT_LT(grey, 155);
}

TEST(ImageUtilsTest, ResizeLeavesCopiesAlone)
{
    ImageObj image(plainPicture(4, 4, Qt::red));
    const ImageObj copy = image;
    ASSERT_TRUE(ImageUtils::resize(image.edit(), 2, 2, false));
    EXPECT_EQ(image.getSize(), QSize(2, 2));
    EXPECT_EQ(copy.getSize(), QSize(4, 4));
}

TEST(ImageUtilsTest, AScreenPictureHasThePixels)
{
    useOffscreenApplication();
    QImage picture = plainPicture(6, 4, Qt::red);
    picture.setPixelColor(5, 3, Qt::blue);
    const QPixmap pixmap = ImageUtils::imageObjToBMP(ImageObj(picture));
    ASSERT_EQ(pixmap.size(), QSize(6, 4));

    // What a widget would show.
    QImage screen(6, 4, QImage::Format_RGB32);
    screen.fill(Qt::white);
    QPainter painter(&screen);
    painter.drawPixmap(0, 0, pixmap);
    painter.end();
    EXPECT_EQ(screen.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(screen.pixelColor(5, 3), QColor(Qt::blue));
}

TEST(ImageUtilsTest, NoImageIsNoScreenPicture)
{
    useOffscreenApplication();
    EXPECT_TRUE(ImageUtils::imageObjToBMP(ImageObj()).isNull());
}

}  // namespace
