#include "host/catalog/ItemSizes.h"

#include <gtest/gtest.h>

using VelkHost::Fit;
using VelkHost::fitOf;
using VelkHost::ItemSize;
using VelkHost::measureFromText;
using VelkHost::measureText;
using VelkHost::priceFromText;
using VelkHost::roomFromText;
using VelkHost::RoomToFit;

namespace {

TEST(ItemSizes, AreReadAsPeopleWriteThem)
{
    EXPECT_EQ(measureFromText("505"), 505.0F);
    EXPECT_EQ(measureFromText(" 50.25 "), 50.25F);
    EXPECT_EQ(measureFromText("50,5"), 50.5F);
    EXPECT_EQ(measureFromText("59.4", 10), 594.0F);
    EXPECT_EQ(measureFromText("0.126"), 0.13F);
    for (const char* const text :
         {"", "-", "-1", "0", "0.001", "1e3", "1.2.3", ".5", "5.", "5 mm", "1000001", "nan", "0x5"})
        EXPECT_EQ(measureFromText(text), std::nullopt) << text;
}

TEST(ItemSizes, AreShownWithoutNeedlessDigits)
{
    EXPECT_EQ(measureText(505), "505");
    EXPECT_EQ(measureText(50.25F), "50.25");
    EXPECT_EQ(measureText(58.4F), "58.4");
    EXPECT_EQ(measureText(1'000'000), "1000000");
    EXPECT_EQ(VelkHost::sizeText({505, 584, 850}), "505 \u00D7 584 \u00D7 850");
    EXPECT_EQ(VelkHost::sizeText({505, 0, 850}), "505 \u00D7 - \u00D7 850");
    EXPECT_EQ(VelkHost::sizeText({}), "");
}

TEST(ItemSizes, HavePricesBesideThem)
{
    EXPECT_EQ(priceFromText("129.90"), "129.90");
    EXPECT_EQ(priceFromText("129,9"), "129.9");
    EXPECT_EQ(priceFromText("5"), "5");
    for (const char* const text : {"", "-5", "1.23456", "1234567890123456", "5 EUR", "1,234.50"})
        EXPECT_EQ(priceFromText(text), std::nullopt) << text;
}

TEST(RoomToFit, IsReadFromThreeMeasures)
{
    EXPECT_EQ(roomFromText("800x600x-"), (RoomToFit{800, 600, 0}));
    EXPECT_EQ(roomFromText("-X-X2000.5"), (RoomToFit{0, 0, 2'000.5F}));
    for (const char* const text : {"", "800", "800x600", "-x-x-", "800x600x-x1", "800xwidex-", "0x600x-", "-800x600x-"})
        EXPECT_EQ(roomFromText(text), std::nullopt) << text;
}

TEST(RoomToFit, TakesWhatIsNotLarger)
{
    const ItemSize chair{505, 584, 850};
    EXPECT_EQ(fitOf(chair, {505, 584, 850}), Fit::Fits);
    EXPECT_EQ(fitOf(chair, {505, 584, 849.99F}), Fit::TooLarge);
    EXPECT_EQ(fitOf(chair, {0, 0, 900}), Fit::Fits);
}

TEST(RoomToFit, TakesWhatFitsTurned)
{
    const ItemSize chair{505, 584, 850};
    EXPECT_EQ(fitOf(chair, {584, 505, 0}), Fit::Fits);
    EXPECT_EQ(fitOf(chair, {584, 505, 0, false}), Fit::TooLarge);
    EXPECT_EQ(fitOf(chair, {510, 510, 0}), Fit::TooLarge);
    EXPECT_EQ(fitOf(chair, {0, 510, 0}), Fit::Fits) << "its width lies in the depth then";
}

TEST(RoomToFit, KnowsNothingOfWhatHasNoSize)
{
    EXPECT_EQ(fitOf({}, {800, 600, 0}), Fit::Unknown);
    EXPECT_EQ(fitOf({505, 584, 0}, {800, 600, 900}), Fit::Unknown);
    EXPECT_EQ(fitOf({505, 584, 0}, {800, 600, 0}), Fit::Fits) << "its height does not matter";
    EXPECT_EQ(fitOf({900, 0, 0}, {800, 600, 0}), Fit::TooLarge) << "whatever its depth is";
    EXPECT_EQ(fitOf({700, 0, 0}, {800, 600, 0}), Fit::Unknown);
}

}  // namespace
