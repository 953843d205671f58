#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/TextNumbers.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>

// Hosts keep translations and preferences under these numbers, so none of them ever changes.
namespace {

TEST(Numbers, OfTextsStay)
{
    using namespace Velk::textNumbers;
    constexpr std::pair<unsigned int, unsigned int> numbers[]{
        {percentage, 2749},          {amounts, 2750},           {amountsToolTip, 2752},
        {barOnlyToolTip, 2753},      {percentageToolTip, 2754}, {downloading, 8709},
        {checkingCatalogs, 8717},    {checkingCatalog, 8723},   {askingService, 8727},
        {downloadUnit, 8745},        {noFilter, 8930},          {firstStyle, 10000},
        {lastStyle, 10014},          {manufacturerCard, 10108}, {preferenceOfOtherType, 272032175},
        {unwritableFile, 272032391},
    };
    for (const auto& [number, kept] : numbers)
        EXPECT_EQ(number, kept);
}

TEST(Numbers, OfPreferencesStay)
{
    using namespace Velk::preferenceNumbers;
    EXPECT_EQ(progressDisplay, std::size_t{236});
    EXPECT_EQ(lastManualUpdateFailed, std::size_t{251});
    EXPECT_EQ(coreLibrariesStay, std::size_t{271});
}

}  // namespace
