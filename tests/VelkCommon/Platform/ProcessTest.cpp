#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/Process.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace {

using Velk::Platform::errorText;
using Velk::Platform::utf8OfSystemText;

// Both systems have the number 2 for a file that is not there.
const std::error_code notThere(2, std::system_category());

TEST(ProcessTest, SaysOfAnErrorWhatTheSystemSaysAfterACall)
{
    ASSERT_FALSE(Velk::Platform::removeFile("a file that is not there", false));
    EXPECT_EQ(errorText(notThere), Velk::Platform::lastErrorText());
    EXPECT_NE(errorText(notThere), errorText({5, std::system_category()}));
}

TEST(ProcessTest, SaysOfErrorsOfOtherKindsWhatTheyAre)
{
    const std::error_code error = std::make_error_code(std::errc::not_a_directory);
    EXPECT_EQ(errorText(error), error.message());
}

TEST(ProcessTest, EndsTheTextOfAnErrorWithoutALineBreak)
{
    for (int number = 1; number < 200; ++number) {
        const std::string text = errorText({number, std::system_category()});
        ASSERT_FALSE(text.empty()) << number;
        EXPECT_EQ(text.find_first_of("\r\n", text.size() - 1), std::string::npos) << number;
    }
}

TEST(ProcessTest, LeavesWhatIsUtf8AsItIs)
{
    for (const char* const text : {"", "Access is denied", "L\u2019acc\u00E8s est refus\u00E9", "\U0001F600"})
        EXPECT_EQ(utf8OfSystemText(text), text);
    const std::string odd("a\0b", 3);
    EXPECT_EQ(utf8OfSystemText(odd), odd);
}

TEST(ProcessTest, TakesOtherTextForTheSystemsOwn)
{
    const std::string text = "refus\xE9";
    const std::string shown = utf8OfSystemText(text);
    if (Velk::Platform::linesEndWithCarriageReturn) {
        EXPECT_TRUE(shown.starts_with("refus"));
        EXPECT_GT(shown.size(), text.size()) << "a character of its own, or what stands for one that is unknown";
    } else {
        EXPECT_EQ(shown, text);
    }
}

}  // namespace
