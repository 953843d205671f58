#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>

namespace {

using boost::multiprecision::cpp_int;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct NumberText
{
    const char* name;
    double value;
    int precision;
    const char* text;
};

class NumberTexts : public testing::TestWithParam<NumberText>
{};

TEST_P(NumberTexts, AreWrittenForPeople)
{
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(GetParam().value, GetParam().precision), GetParam().text);
}

const NumberText numberTexts[] = {
    // Thousands separators.
    {"Zero", 0, 9, "0"},
    {"One", 1, 9, "1"},
    {"ThreeDigits", 999, 9, "999"},
    {"FourDigits", 1000, 9, "1,000"},
    {"SixDigits", 123456, 9, "123,456"},
    {"SevenDigits", 1234567, 9, "1,234,567"},
    {"NegativeThreeDigits", -999, 9, "-999"},
    {"NegativeFourDigits", -1000, 9, "-1,000"},
    {"Large", 1e21, 9, "1,000,000,000,000,000,000,000"},
    {"LargeExact", 1e23, 0, "99,999,999,999,999,991,611,392"},
    // At most the given number of decimals, without trailing zeros.
    {"Half", 1234567.5, 9, "1,234,567.5"},
    {"NineDecimals", 0.123456789, 9, "0.123456789"},
    {"TenthDecimalDropped", 0.1234567891, 9, "0.123456789"},
    {"Tenth", 0.1, 9, "0.1"},
    {"TenthExact", 0.1, 55, "0.1000000000000000055511151231257827021181583404541015625"},
    {"TenthExactAndMoreRoom", 0.1, 1000, "0.1000000000000000055511151231257827021181583404541015625"},
    {"ZerosWithin", 1.0203, 9, "1.0203"},
    {"NoDecimals", 1234.25, 0, "1,234"},
    {"NegativePrecision", 1234.25, -3, "1,234"},
    {"NoGroupsBehindThePoint", 0.1234567, 9, "0.1234567"},
    {"Tiny", 1e-10, 9, "0"},
    {"SmallestBeforeItsDigits", 5e-324, 323, "0"},
    // Halves round away from zero; the exact value of the double decides.
    {"HalfUp", 0.5, 0, "1"},
    {"HalfOfOddUp", 1.5, 0, "2"},
    {"HalfOfEvenUp", 2.5, 0, "3"},
    {"NegativeHalf", -0.5, 0, "-1"},
    {"NegativeHalfOfEven", -2.5, 0, "-3"},
    {"BelowHalf", 0.49999999999999994, 0, "0"},
    {"EighthUp", 0.125, 2, "0.13"},
    {"NegativeEighth", -0.125, 2, "-0.13"},
    {"SlightlyBelowHalf", 2.675, 2, "2.67"},
    {"SlightlyAboveHalf", 0.025, 2, "0.03"},
    {"SlightlyBelowHalfGone", 1.005, 2, "1"},
    {"CarryIntoWhole", 9.996, 2, "10"},
    {"CarryIntoNewGroup", 999999.5, 0, "1,000,000"},
    {"CarryWithinFraction", 0.0999999999999, 9, "0.1"},
    // Zero has no sign.
    {"MinusZero", -0.0, 9, "0"},
    {"NegativeRoundedToZero", -0.4, 0, "0"},
    {"NegativeTiny", -1e-300, 9, "0"},
    // Values that are not finite.
    {"NotANumber", notANumber, 9, "nan"},
    {"NegativeNotANumber", -notANumber, 9, "nan"},
    {"Infinity", infinity, 9, "inf"},
    {"NegativeInfinity", -infinity, 9, "-inf"},
};
INSTANTIATE_TEST_SUITE_P(Rows, NumberTexts, testing::ValuesIn(numberTexts),
                         [](const auto& row) { return row.param.name; });

/// The same text computed with whole numbers: the double is `mantissa` times a power of two.
std::string referenceText(double value, unsigned precision)
{
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(value), &exponent);
    cpp_int numerator = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    cpp_int denominator = 1;
    exponent -= 53;
    (exponent >= 0 ? numerator : denominator) <<= static_cast<unsigned>(std::abs(exponent));
    const cpp_int scale = boost::multiprecision::pow(cpp_int(10), precision);
    const cpp_int scaled = (2 * numerator * scale + denominator) / (2 * denominator);

    std::string whole = cpp_int(scaled / scale).str();
    std::string decimals = precision == 0 ? "" : cpp_int(scale + scaled % scale).str().substr(1);
    decimals.erase(decimals.find_last_not_of('0') + 1);
    for (std::size_t at = whole.size(); at > 3; at -= 3)
        whole.insert(at - 3, ",");
    return (value < 0 && scaled != 0 ? "-" : "") + whole + (decimals.empty() ? "" : "." + decimals);
}

TEST(NumberTextsTest, AgreeWithWholeNumberArithmetic)
{
    std::mt19937_64 random(1852);
    const int precisions[] = {0, 1, 2, 3, 9, 20};
    for (int round = 0; round < 3000; ++round) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const int precision = precisions[random() % 6];
        ASSERT_EQ(formatWithThousandsSeparatorPrecision(value, precision),
                  referenceText(value, static_cast<unsigned>(precision)))
            << value << " " << precision;
    }
}

TEST(NumberTextsTest, AgreeWithWholeNumberArithmeticOnHalves)
{
    std::mt19937_64 random(1252);
    for (int round = 0; round < 3000; ++round) {
        const int eighths = static_cast<int>(random() % 200001) - 100000;
        const double value = eighths / 8.0;
        for (const unsigned precision : {0u, 1u, 2u, 3u})
            ASSERT_EQ(formatWithThousandsSeparatorPrecision(value, static_cast<int>(precision)),
                      referenceText(value, precision))
                << value << " " << precision;
    }
}

TEST(NumberTextsTest, AreExactAtTheLimits)
{
    for (const double value : {1e300, -1e300, std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                               std::numeric_limits<double>::denorm_min(), 1.0 + 1e-15}) {
        for (const unsigned precision : {0u, 9u, 1000u, 1074u, 1500u})
            EXPECT_EQ(formatWithThousandsSeparatorPrecision(value, static_cast<int>(precision)),
                      referenceText(value, precision));
    }
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(0.25, std::numeric_limits<int>::max()), "0.25");
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(0.25, std::numeric_limits<int>::min()), "0");
}

TEST(NumberTextsTest, HaveTheHostsSeparators)
{
    Velk::HostServices services;
    services.numberFormat = {"\xE2\x80\xAF", ","};
    Velk::installHost(services);
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(-1234567.25, 9),
              "-1\xE2\x80\xAF"
              "234\xE2\x80\xAF"
              "567,25");
    services.numberFormat = {"", "."};
    Velk::installHost(services);
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(1234567.25, 9), "1234567.25");
    Velk::installHost({});
    EXPECT_EQ(formatWithThousandsSeparatorPrecision(1234567.25, 9), "1,234,567.25");
}

class OddNumbers : public std::numpunct<char>
{
    std::string do_grouping() const override { return "\1"; }
    char do_thousands_sep() const override { return '#'; }
    char do_decimal_point() const override { return ';'; }
};

TEST(NumberTextsTest, AreTheSameUnderEveryLocale)
{
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new OddNumbers));
    const std::string text = formatWithThousandsSeparatorPrecision(1234567.25, 9);
    std::locale::global(previous);
    EXPECT_EQ(text, "1,234,567.25");
}

struct Rounding
{
    const char* name;
    double value;
    long long whole;
};

class RoundToNearest : public testing::TestWithParam<Rounding>
{};

template <typename T>
T clamped(long long value)
{
    using Limits = std::numeric_limits<T>;
    return value < Limits::min() ? Limits::min() : value > Limits::max() ? Limits::max() : static_cast<T>(value);
}

TEST_P(RoundToNearest, IsTheNearestWholeNumberOfTheType)
{
    EXPECT_EQ(roundToNearest<long long>(GetParam().value), GetParam().whole);
    EXPECT_EQ(roundToNearest<long>(GetParam().value), clamped<long>(GetParam().whole));
    EXPECT_EQ(roundToNearest<int>(GetParam().value), clamped<int>(GetParam().whole));
}

constexpr long long least = std::numeric_limits<long long>::min();
constexpr long long greatest = std::numeric_limits<long long>::max();

const Rounding roundings[] = {
    {"Zero", 0, 0},
    {"MinusZero", -0.0, 0},
    {"BelowHalf", 0.49999999999999994, 0},
    {"Half", 0.5, 1},
    {"OneAndAHalf", 1.5, 2},
    {"TwoAndAHalf", 2.5, 3},
    {"NegativeHalf", -0.5, -1},
    {"NegativeTwoAndAHalf", -2.5, -3},
    {"BelowTwo", 1.999, 2},
    {"LastInt", 2147483647.0, 2147483647},
    {"LastIntAndLess", 2147483647.4, 2147483647},
    {"BeyondInt", 2147483647.5, 2147483648},
    {"FirstInt", -2147483648.0, -2147483648LL},
    {"BeforeInt", -2147483649.0, -2147483649LL},
    {"OddAboveTwoTo52", 4503599627370497.0, 4503599627370497},
    {"LargestBelowTwoTo63", 9223372036854774784.0, 9223372036854774784LL},
    {"TwoTo63", 9223372036854775808.0, greatest},
    {"MinusTwoTo63", -9223372036854775808.0, least},
    {"Huge", 1e300, greatest},
    {"NegativeHuge", -1e300, least},
    {"Infinity", infinity, greatest},
    {"NegativeInfinity", -infinity, least},
    {"NotANumber", notANumber, 0},
};
INSTANTIATE_TEST_SUITE_P(Rows, RoundToNearest, testing::ValuesIn(roundings),
                         [](const auto& row) { return row.param.name; });

}  // namespace
