#include <VelkCommon/Text/Hexadecimal.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace Velk;

TEST(HexadecimalTest, WritesTwoSmallDigitsForEachByte)
{
    EXPECT_EQ(Hexadecimal::textOf(""), "");
    EXPECT_EQ(Hexadecimal::textOf(std::string_view("\x00\x0F\xA5\xFF", 4)), "000fa5ff");
}

TEST(HexadecimalTest, KnowsTheValueOfEveryByte)
{
    for (int number = 0; number < 256; ++number) {
        const auto byte = static_cast<char>(number);
        const std::size_t lower = std::string_view("0123456789abcdef").find(byte);
        const std::size_t capital = std::string_view("0123456789ABCDEF").find(byte);
        const std::size_t digit = lower != std::string_view::npos ? lower : capital;
        EXPECT_EQ(Hexadecimal::valueOf(byte), digit == std::string_view::npos ? -1 : static_cast<int>(digit)) << number;
    }
}

}  // namespace
