#include <VelkCommon/Text/Ascii.h>

#include <gtest/gtest.h>

#include <string_view>

namespace {

using namespace Velk;

constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view smallLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view digits = "0123456789";

TEST(AsciiTest, KnowsTheKindOfEveryByte)
{
    for (int number = 0; number < 256; ++number) {
        const auto byte = static_cast<char>(number);
        const bool capital = capitals.find(byte) != std::string_view::npos;
        EXPECT_EQ(Ascii::isCapital(byte), capital) << number;
        EXPECT_EQ(Ascii::isLetter(byte), capital || smallLetters.find(byte) != std::string_view::npos) << number;
        EXPECT_EQ(Ascii::isDigit(byte), digits.find(byte) != std::string_view::npos) << number;
        EXPECT_EQ(Ascii::isControl(byte), number < 0x20 || number == 0x7F) << number;
    }
}

TEST(AsciiTest, LowersCapitalsOnly)
{
    for (int number = 0; number < 256; ++number) {
        const auto byte = static_cast<char>(number);
        const std::size_t capital = capitals.find(byte);
        EXPECT_EQ(Ascii::lower(byte), capital == std::string_view::npos ? byte : smallLetters[capital]) << number;
    }
}

TEST(AsciiTest, TakesCodePoints)
{
    EXPECT_EQ(Ascii::lower(U'Q'), U'q');
    EXPECT_EQ(Ascii::lower(U'\u00C0'), U'\u00C0');
    EXPECT_FALSE(Ascii::isLetter(U'\uFF21'));
    EXPECT_FALSE(Ascii::isDigit(U'\u0661'));
    EXPECT_TRUE(Ascii::isControl(U'\n'));
    EXPECT_FALSE(Ascii::isControl(char32_t{0x10A}));
}

}  // namespace
