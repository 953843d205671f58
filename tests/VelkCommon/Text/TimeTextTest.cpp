#include <VelkCommon/Text/TimeText.h>

#include <gtest/gtest.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time.hpp>

#include <locale>
#include <random>
#include <regex>

namespace {

using boost::gregorian::date;
using boost::posix_time::microseconds;
using boost::posix_time::ptime;
using boost::posix_time::time_duration;

ptime at(int year, int month, int day, int hours, int minutes, int seconds, int fraction = 0)
{
    return {
        date(static_cast<unsigned short>(year), static_cast<unsigned short>(month), static_cast<unsigned short>(day)),
        time_duration(hours, minutes, seconds) + microseconds(fraction)};
}

struct TimeForm
{
    const char* name;
    ptime time;
    const char* text;
};

class TimeText : public testing::TestWithParam<TimeForm>
{};

TEST_P(TimeText, IsWrittenAndReadBack)
{
    EXPECT_EQ(Library::toString(GetParam().time), GetParam().text);
    EXPECT_EQ(Library::fromString<ptime>(GetParam().text), GetParam().time);
}

TEST_P(TimeText, IsBoostsIsoForm)
{
    EXPECT_EQ(Library::toString<ptime>(GetParam().time), boost::posix_time::to_iso_string(GetParam().time));
}

const TimeForm timeForms[] = {
    {"Whole", at(2026, 3, 1, 14, 5, 59), "20260301T140559"},
    {"Fraction", at(2026, 3, 1, 14, 5, 59, 12345), "20260301T140559.012345"},
    {"SmallestFraction", at(2026, 3, 1, 14, 5, 59, 1), "20260301T140559.000001"},
    {"FractionWithZeros", at(2026, 3, 1, 14, 5, 59, 500000), "20260301T140559.500000"},
    {"Midnight", at(2000, 1, 1, 0, 0, 0), "20000101T000000"},
    {"EndOfDay", at(1999, 12, 31, 23, 59, 59, 999999), "19991231T235959.999999"},
    {"LeapDay", at(2024, 2, 29, 12, 0, 0), "20240229T120000"},
    {"Minimum", ptime(boost::posix_time::min_date_time), "14000101T000000"},
    {"Maximum", ptime(boost::posix_time::max_date_time), "99991231T235959.999999"},
    {"MinusInfinity", ptime(boost::posix_time::neg_infin), "-infinity"},
    {"PlusInfinity", ptime(boost::posix_time::pos_infin), "+infinity"},
};
INSTANTIATE_TEST_SUITE_P(Forms, TimeText, testing::ValuesIn(timeForms), [](const auto& row) { return row.param.name; });

TEST(TimeTextTest, NotADateTimeIsWrittenAndReadBack)
{
    EXPECT_EQ(Library::toString(ptime()), "not-a-date-time");
    EXPECT_TRUE(Library::fromString<ptime>("not-a-date-time").is_not_a_date_time());
}

TEST(TimeTextTest, RandomTimesSurviveTheRoundTrip)
{
    std::mt19937_64 random(20260301);
    const ptime first(boost::posix_time::min_date_time);
    const auto span = (ptime(boost::posix_time::max_date_time) - first).total_microseconds();
    for (int round = 0; round < 10000; ++round) {
        const ptime time = first + microseconds(static_cast<long long>(random() % static_cast<std::uint64_t>(span)));
        ASSERT_EQ(Library::fromString<ptime>(Library::toString(time)), time) << Library::toString(time);
    }
}

struct ReadForm
{
    const char* name;
    const char* text;
    ptime time;
};

class ReadTimeText : public testing::TestWithParam<ReadForm>
{};

TEST_P(ReadTimeText, IsRead)
{
    EXPECT_EQ(Library::fromString<ptime>(GetParam().text), GetParam().time);
}

const ReadForm readForms[] = {
    {"OneDigit", "20260301T140559.5", at(2026, 3, 1, 14, 5, 59, 500000)},
    {"Comma", "20260301T140559,25", at(2026, 3, 1, 14, 5, 59, 250000)},
    {"SevenDigits", "20260301T140559.1234567", at(2026, 3, 1, 14, 5, 59, 123456)},
    {"NineDigits", "20260301T140559.123456789", at(2026, 3, 1, 14, 5, 59, 123456)},
    {"NineNines", "20260301T140559.999999999", at(2026, 3, 1, 14, 5, 59, 999999)},
    {"FractionOfZeros", "20260301T140559.000", at(2026, 3, 1, 14, 5, 59)},
};
INSTANTIATE_TEST_SUITE_P(Forms, ReadTimeText, testing::ValuesIn(readForms),
                         [](const auto& row) { return row.param.name; });

struct BadForm
{
    const char* name;
    std::string text;
};

class BadTimeText : public testing::TestWithParam<BadForm>
{};

TEST_P(BadTimeText, IsNotADateTime)
{
    ptime time = at(2000, 1, 1, 0, 0, 0);
    ASSERT_NO_THROW(time = Library::fromString<ptime>(GetParam().text));
    EXPECT_TRUE(time.is_not_a_date_time()) << time;
}

using namespace std::string_literals;

const BadForm badForms[] = {
    // Texts of another form.
    {"Empty", ""},
    {"Words", "yesterday"},
    {"DateOnly", "20260301"},
    {"DateAndLetter", "20260301T"},
    {"OneDigitMissing", "20260301T14055"},
    {"OneDigitMore", "20260301T1405590"},
    {"SmallLetter", "20260301t140559"},
    {"BlankInPlaceOfLetter", "20260301 140559"},
    {"Separators", "2026-03-01T14:05:59"},
    {"Zone", "20260301T140559Z"},
    {"ZoneBehindFraction", "20260301T140559.5Z"},
    {"BlankInFront", " 20260301T140559"},
    {"BlankBehind", "20260301T140559 "},
    {"LineBreakBehind", "20260301T140559\n"},
    {"ZeroByteBehind", "20260301T140559\0"s},
    {"PointWithoutDigits", "20260301T140559."},
    {"TenDigitsOfFraction", "20260301T140559.1234567890"},
    {"FractionWithSign", "20260301T140559.-5"},
    {"OtherSeparator", "20260301T140559:5"},
    {"SignedYear", "-2026301T140559"},
    {"SignedMonth", "2026+301T140559"},
    {"BlankInField", "2026 301T140559"},
    {"Letters", "2026O301T140559"},
    {"HexDigits", "0x260301T140559"},
    {"FullWidthDigits",
     "\xEF\xBC\x92\xEF\xBC\x90"
     "26301T140559"},
    {"InfinityWithoutSign", "infinity"},
    {"InfinityInCapitals", "+INFINITY"},
    {"InfinityWithMore", "+infinity "},
    // Fields out of range.
    {"YearBeforeTheFirst", "13991231T235959"},
    {"YearZero", "00000101T000000"},
    {"MonthZero", "20260001T000000"},
    {"MonthThirteen", "20261301T000000"},
    {"DayZero", "20260300T000000"},
    {"DayThirtyTwo", "20260332T000000"},
    {"DayThirtyOneOfApril", "20260431T000000"},
    {"NoLeapDay", "20260229T000000"},
    {"NoLeapDayOfCentury", "21000229T000000"},
    {"HourTwentyFour", "20260301T240000"},
    {"MinuteSixty", "20260301T146000"},
    {"SecondSixty", "20260301T140560"},
};
INSTANTIATE_TEST_SUITE_P(Forms, BadTimeText, testing::ValuesIn(badForms),
                         [](const auto& row) { return row.param.name; });

TEST(TimeTextTest, NowIsTheTimeOfTheSystemInUtc)
{
    const ptime before = boost::posix_time::microsec_clock::universal_time();
    const ptime now = Library::getTimeNow();
    const ptime after = boost::posix_time::microsec_clock::universal_time();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(TimeTextTest, NowAsTextIsTheSameTime)
{
    const ptime before = Library::getTimeNow();
    const std::string text = Library::getTimeNowString();
    const ptime after = Library::getTimeNow();
    ASSERT_TRUE(std::regex_match(text, std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{6}Z"))) << text;
    const ptime read = boost::posix_time::from_iso_extended_string(text.substr(0, text.size() - 1));
    EXPECT_LE(before, read);
    EXPECT_LE(read, after);
}

class GroupingAll : public std::numpunct<char>
{
    std::string do_grouping() const override { return "\1"; }
    char do_thousands_sep() const override { return '\''; }
};

TEST(TimeTextTest, IsTheSameUnderEveryLocale)
{
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new GroupingAll));
    const std::string text = Library::toString(at(2026, 3, 1, 14, 5, 59, 123456));
    const std::string now = Library::getTimeNowString();
    std::locale::global(previous);
    EXPECT_EQ(text, "20260301T140559.123456");
    EXPECT_EQ(now.find('\''), std::string::npos) << now;
}

}  // namespace
