#include <VelkCommon/Imaging/ImageObj.h>

#include "Pictures.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <type_traits>

namespace {

TEST(ImageObjTest, WithoutPictureIsNotValid)
{
    const ImageObj none;
    EXPECT_FALSE(none.valid());
    EXPECT_EQ(none.getSize(), QSize(0, 0));
    EXPECT_FALSE(ImageObj(QImage()).valid());
    EXPECT_FALSE(ImageObj(none).valid());
}

TEST(ImageObjTest, HasTheSizeOfItsPicture)
{
    const ImageObj image(plainPicture(30, 20, Qt::red));
    EXPECT_TRUE(image.valid());
    EXPECT_EQ(image.getSize(), QSize(30, 20));
    EXPECT_EQ(image.image().pixelColor(29, 19), QColor(Qt::red));
}

TEST(ImageObjTest, CopiesShareTheirPixelsUntilOneIsEdited)
{
    ImageObj original(plainPicture(4, 4, Qt::red));
    const ImageObj copy = original;
    EXPECT_EQ(copy.image().constBits(), original.image().constBits());

    original.edit().image().setPixelColor(1, 2, Qt::blue);
    EXPECT_EQ(original.image().pixelColor(1, 2), QColor(Qt::blue));
    EXPECT_EQ(copy.image().pixelColor(1, 2), QColor(Qt::red));
}

TEST(ImageObjTest, CopiesMadeDuringAnEditKeepTheirPixels)
{
    ImageObj original(plainPicture(4, 4, Qt::red));
    ImageObj::Editable edit = original.edit();
    const ImageObj copy = original;
    edit.image().fill(Qt::green);
    EXPECT_EQ(original.image().pixelColor(0, 0), QColor(Qt::green));
    EXPECT_EQ(copy.image().pixelColor(0, 0), QColor(Qt::red));
}

TEST(ImageObjTest, IsAssigned)
{
    ImageObj image(plainPicture(4, 4, Qt::red));
    image = ImageObj(plainPicture(2, 3, Qt::blue));
    EXPECT_EQ(image.getSize(), QSize(2, 3));
    image = ImageObj();
    EXPECT_FALSE(image.valid());
}

TEST(ImageObjTest, IsPaintedOnThroughAHandle)
{
    ImageObj image(plainPicture(10, 10, Qt::white));
    ImageObj::Editable edit = image.edit();
    ImageObj::Editable moved = std::move(edit);
    QPainter painter(&moved.image());
    painter.fillRect(2, 2, 3, 3, Qt::black);
    painter.end();
    EXPECT_EQ(image.image().pixelColor(2, 2), QColor(Qt::black));
    EXPECT_EQ(image.image().pixelColor(4, 4), QColor(Qt::black));
    EXPECT_EQ(image.image().pixelColor(5, 5), QColor(Qt::white));
}

TEST(ImageObjTest, HandlesAreMovedOnly)
{
    EXPECT_FALSE(std::is_copy_constructible_v<ImageObj::Editable>);
    EXPECT_FALSE(std::is_copy_assignable_v<ImageObj::Editable>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<ImageObj::Editable>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<ImageObj::Editable>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ImageObj>);
}

}  // namespace
