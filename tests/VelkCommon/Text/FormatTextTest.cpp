#include <VelkCommon/Text/FormatText.h>

#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <random>
#include <string>

namespace {

struct OneArgument
{
    const char* name;
    std::string pattern;
    std::string text;  // with the argument "A"
};

class FormatText : public testing::TestWithParam<OneArgument>
{};

TEST_P(FormatText, IsReadableForEveryPattern)
{
    EXPECT_EQ(Velk::formatText(GetParam().pattern, std::string("A")), GetParam().text);
}

const OneArgument oneArgumentRows[] = {
    // What a text should look like.
    {"Placeholder", "Asking %1%", "Asking A"},
    {"PlaceholderTwice", "%1%, %1%", "A, A"},
    {"PercentSign", "%1% %%", "A %"},
    {"PercentSignBehind", "%1%%%", "A%"},
    {"PercentSignAlone", "%%", "%"},
    {"NoPlaceholder", "Checking", "Checking"},
    {"PrintfForm", "Asking %s", "Asking A"},
    {"PrintfFormWithNumber", "Asking %1$s", "Asking A"},
    {"Width", "[%1$3s]", "[  A]"},
    {"Utf8",
     "K\xC3\xBC"
     "che %1%",
     "K\xC3\xBC"
     "che A"},
    // Too many placeholders: one without an argument vanishes.
    {"SecondWithoutArgument", "%1% %2%", "A "},
    {"SecondOfPrintfForm", "%s and %s", "A and "},
    // Nothing would be left: the result is the argument itself.
    {"Empty", "", "A"},
    {"OnlyOthers", "%5%", "A"},
    {"OnlyNumberZero", "%0%", "A"},
    // Broken: the percent sign stays.
    {"LonePercent", "%", "%"},
    {"PercentAtTheEnd", "100 %", "100 %"},
    {"PercentAtTheEndDirectly", "100%", "100%"},
    {"NotClosed", "%1", "%1"},
    {"NotClosedInText", "Asking %1 now", "Asking %1 now"},
    {"PercentBeforeBlank", "100 % done", "100 % done"},
    {"PercentBeforeBlankAndPlaceholder", "100 % done %1%", "100 % done A"},
    {"PercentInText", "50% of %1%", "50% of A"},
    {"PercentBeforeUtf8", "%\xC3\xA9t\xC3\xA9 %1%", "%\xC3\xA9t\xC3\xA9 A"},
    {"MixedForms", "%s %1%", "%s A"},
    {"NumberThatOverflows", "%99999999999999999999% %1%", " A"},
    {"WidthThatOverflows", "%1$99999999999s|%1%", "%1$99999999999s|A"},
    {"LongNumberInText", "%1% of 123456789", "A of 123456789"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FormatText, testing::ValuesIn(oneArgumentRows),
                         [](const auto& row) { return row.param.name; });

TEST(FormatTextTest, TakesSeveralArgumentsInAnyOrder)
{
    EXPECT_EQ(Velk::formatText("%1% of %2%", std::string("1,000"), std::string("2,000")), "1,000 of 2,000");
    EXPECT_EQ(Velk::formatText("%2%/%1%", std::string("a"), std::string("b")), "b/a");
}

TEST(FormatTextTest, LeavesOutArgumentsWithoutPlaceholder)
{
    EXPECT_EQ(Velk::formatText("The file %1% cannot be written.", std::string("x"), std::string("y"), std::string()),
              "The file x cannot be written.");
}

TEST(FormatTextTest, WithoutPatternJoinsWhatIsNotEmpty)
{
    EXPECT_EQ(Velk::formatText("", std::string("a"), std::string(), std::string("b")), "a b");
    EXPECT_EQ(Velk::formatText("", std::string(), std::string()), "");
    EXPECT_EQ(Velk::formatText(""), "");
}

TEST(FormatTextTest, WithoutArgumentsKeepsThePattern)
{
    EXPECT_EQ(Velk::formatText("100 %"), "100 %");
    EXPECT_EQ(Velk::formatText("%% %1%"), "% ");
}

TEST(FormatTextTest, DoesNotReadTheArgumentsAsPatterns)
{
    EXPECT_EQ(Velk::formatText("[%1%] [%2%]", std::string("%2%"), std::string("100 %")), "[%2%] [100 %]");
    EXPECT_EQ(Velk::formatText("50% of [%1%]", std::string("%1%")), "50% of [%1%]");
}

class Grouping : public std::numpunct<char>
{
    std::string do_grouping() const override { return "\3"; }
    char do_thousands_sep() const override { return '\''; }
};

/// A global locale that groups digits, until the end of the scope.
class GroupingLocale
{
public:
    GroupingLocale() : previous_(std::locale::global(std::locale(std::locale::classic(), new Grouping))) {}
    ~GroupingLocale() { std::locale::global(previous_); }

private:
    std::locale previous_;
};

TEST(FormatTextTest, WritesNumbersTheSameUnderEveryLocale)
{
    const GroupingLocale locale;
    ASSERT_EQ((std::ostringstream() << 1234567).str(), "1'234'567");
    EXPECT_EQ(Velk::formatText("%1% %%", 1234567), "1234567 %");
    EXPECT_EQ(Velk::formatText("", 1234567), "1234567");
    EXPECT_EQ(Velk::formatText("50% of %1%", 1234567), "50% of 1234567");
}

TEST(FormatTextTest, NeverThrowsForRandomPatterns)
{
    std::mt19937 random(20260301);
    const std::string alphabet = "%%%%%1239$|*.-+ #sdxXfgcnt()hl[]'_=\xC3\xA9";
    for (int round = 0; round < 20000; ++round) {
        std::string pattern;
        for (auto length = random() % 12; length > 0; --length)
            pattern += alphabet[random() % alphabet.size()];
        EXPECT_NO_THROW(static_cast<void>(Velk::formatText(pattern, std::string("A"), 42))) << pattern;
    }
}

}  // namespace
