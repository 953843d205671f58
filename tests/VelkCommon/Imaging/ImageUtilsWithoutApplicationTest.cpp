// This test is a separate program, because the other image tests keep their application until they end.
#include <VelkCommon/Imaging/ImageUtils.h>

#include "Pictures.h"

#include <VelkCommon/Reporting/EnforcerThrow.h>

#include <gtest/gtest.h>

namespace {

TEST(ImageUtilsWithoutApplication, AScreenPictureIsAPreconditionViolated)
{
    EXPECT_THROW(ImageUtils::imageObjToBMP(ImageObj(plainPicture(2, 2, Qt::red))), EnforcerException);
    EXPECT_THROW(ImageUtils::imageObjToBMP(ImageObj()), EnforcerException);
}

TEST(ImageUtilsWithoutApplication, AnApplicationWithoutScreenIsNotEnough)
{
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QCoreApplication withoutScreen(count, arguments);
    EXPECT_THROW(ImageUtils::imageObjToBMP(ImageObj(plainPicture(2, 2, Qt::red))), EnforcerException);
}

TEST(ImageUtilsWithoutApplication, ImagesAreResized)
{
    ImageObj image(plainPicture(4, 2, Qt::red));
    EXPECT_TRUE(ImageUtils::resize(image.edit(), 2, 2, true));
    EXPECT_EQ(image.getSize(), QSize(2, 1));
}

}  // namespace
