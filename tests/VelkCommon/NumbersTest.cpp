#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/TextNumbers.h>

#include <gtest/gtest.h>

#include <cstddef>

// Hosts keep translations and preferences under these numbers, so none of them ever changes.
namespace {

TEST(Numbers, OfTextsStay)
{
    using namespace Velk::textNumbers;
    EXPECT_EQ(percentage, 2749U);
    EXPECT_EQ(amounts, 2750U);
    EXPECT_EQ(amountsToolTip, 2752U);
    EXPECT_EQ(barOnlyToolTip, 2753U);
    EXPECT_EQ(percentageToolTip, 2754U);
    EXPECT_EQ(downloading, 8709U);
    EXPECT_EQ(checkingCatalogs, 8717U);
    EXPECT_EQ(checkingCatalog, 8723U);
    EXPECT_EQ(askingService, 8727U);
    EXPECT_EQ(downloadUnit, 8745U);
    EXPECT_EQ(noFilter, 8930U);
    EXPECT_EQ(firstStyle, 10000U);
    EXPECT_EQ(lastStyle, 10014U);
    EXPECT_EQ(manufacturerCard, 10108U);
    EXPECT_EQ(preferenceOfOtherType, 272032175U);
    EXPECT_EQ(unwritableFile, 272032391U);
}

TEST(Numbers, OfPreferencesStay)
{
    using namespace Velk::preferenceNumbers;
    EXPECT_EQ(progressDisplay, std::size_t{236});
    EXPECT_EQ(lastManualUpdateFailed, std::size_t{251});
    EXPECT_EQ(coreLibrariesStay, std::size_t{271});
}

}  // namespace
