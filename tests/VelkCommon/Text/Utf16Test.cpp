#include <VelkCommon/Text/Utf16.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using namespace Velk;

TEST(Utf16Test, TakesPairsApartAndJoinsThem)
{
    EXPECT_EQ(Utf16::leadOf(0x1F600), char32_t{0xD83D});
    EXPECT_EQ(Utf16::trailOf(0x1F600), char32_t{0xDE00});
    for (char32_t point = Utf16::firstPaired; point <= 0x10FFFF; ++point) {
        const char32_t lead = Utf16::leadOf(point);
        const char32_t trail = Utf16::trailOf(point);
        ASSERT_TRUE(Utf16::isLead(lead) && Utf16::isTrail(trail)) << std::uint32_t{point};
        ASSERT_EQ(Utf16::joined(lead, trail), point) << std::uint32_t{point};
    }
}

TEST(Utf16Test, TellsHalvesFromAllElse)
{
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        ASSERT_EQ(Utf16::isLead(unit), unit / 0x400 == 0x36) << std::uint32_t{unit};
        ASSERT_EQ(Utf16::isTrail(unit), unit / 0x400 == 0x37) << std::uint32_t{unit};
    }
    EXPECT_FALSE(Utf16::isLead(0x1D800));
    EXPECT_FALSE(Utf16::isTrail(0x1DC00));
}

}  // namespace
