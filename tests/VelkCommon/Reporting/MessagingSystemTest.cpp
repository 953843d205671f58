#include <VelkCommon/Reporting/MessagingSystem.h>

#include "StandardError.h"
#include "support/Numbers.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <VelkCommon/Text/StringConvert.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

class Messages : public test::TestHost
{
protected:
    static error::Button notify(long id, const std::string& text, const std::string& detail1 = "",
                                const std::string& detail2 = "")
    {
        return error::MessagingSystem::control().notify("source", 12, error::WarningTrait(), id, text, detail1,
                                                        detail2);
    }

    void installMessageBox(std::function<error::Button(const error::Message&)> showMessage)
    {
        Velk::HostServices changed = services();
        changed.showMessage = std::move(showMessage);
        Velk::installHost(std::move(changed));
    }
};

TEST_F(Messages, HaveOneService)
{
    EXPECT_EQ(&error::MessagingSystem::control(), &error::MessagingSystem::control());
}

TEST_F(Messages, ReachTheHostWhole)
{
    error::MessagingSystem::control().notify("LibraryFilterManager", test::reportLine::filtersUnwritable,
                                             error::ErrorMinimalTrait(), test::messageId::fileUnwritable,
                                             std::u32string(U"C:/\u00DCber"), std::u32string(U"one"),
                                             std::u32string(U"two"));
    ASSERT_EQ(messages().size(), 1u);
    const error::Message message = messages()[0];
    EXPECT_EQ(message.sourceFile, "LibraryFilterManager");
    EXPECT_EQ(message.line, test::reportLine::filtersUnwritable);
    EXPECT_EQ(message.trait.severity, error::Severity::Error);
    EXPECT_EQ(message.trait.buttons, error::Buttons::Ok);
    EXPECT_EQ(message.id, test::messageId::fileUnwritable);
    EXPECT_EQ(message.text, U"C:/\u00DCber");
    EXPECT_EQ(message.detail1, U"one");
    EXPECT_EQ(message.detail2, U"two");
}

TEST_F(Messages, OfNarrowTextAreUtf8)
{
    notify(5,
           "\xC3\x9C"
           "ber\xFF",
           "\xE2\x82\xAC", "\xF0\x9F\x98\x80");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].text, U"\u00DCber\uFFFD");
    EXPECT_EQ(messages()[0].detail1, U"\u20AC");
    EXPECT_EQ(messages()[0].detail2, U"\U0001F600");
    EXPECT_EQ(messages()[0].trait.severity, error::Severity::Warning);
}

TEST_F(Messages, WithoutASourceAreShownAllTheSame)
{
    error::MessagingSystem::control().notify(nullptr, 0, error::WarningTrait(), 5, std::u32string(U"text"),
                                             std::u32string(), std::u32string());
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].sourceFile, "");
}

TEST_F(Messages, HandBackTheButton)
{
    installMessageBox([](const error::Message&) { return error::Button::Cancel; });
    EXPECT_EQ(notify(5, "text"), error::Button::Cancel);
    installMessageBox([](const error::Message&) { return error::Button::Yes; });
    EXPECT_EQ(notify(5, "text"), error::Button::Yes);
}

TEST_F(Messages, GoToStandardErrorInOneLineWithoutAHost)
{
    Velk::installHost({});
    EXPECT_EQ(
        standardErrorOf([] { EXPECT_EQ(notify(test::messageId::fileUnwritable, "C:/\xC3\x9C"), error::Button::Ok); }),
        "velk: warning: The file C:/\xC3\x9C cannot be written. (source:12, 272032391)\n");
    EXPECT_EQ(standardErrorOf([] { notify(5, "a\x1B[2J\tb\x7F", "", ""); }),
              "velk: warning: a [2J b  (source:12, 5)\n");
    EXPECT_EQ(standardErrorOf([] { notify(5, "first\nsecond\r\n", "", "third"); }),
              "velk: warning: first second   third (source:12, 5)\n");
    EXPECT_EQ(standardErrorOf([] {
                  error::MessagingSystem::control().notify("source", 1, error::ErrorMinimalTrait(), -1,
                                                           std::u32string(U"text"), std::u32string(), std::u32string());
                  error::MessagingSystem::control().notify("source", 2, error::MessageTrait(), 0,
                                                           std::u32string(U"text"), std::u32string(), std::u32string());
              }),
              "velk: error: text (source:1, -1)\n"
              "velk: information: text (source:2, 0)\n");
}

TEST_F(Messages, GoToStandardErrorWhenTheHostThrows)
{
    installMessageBox([](const error::Message&) -> error::Button { throw std::runtime_error("no window"); });
    EXPECT_EQ(standardErrorOf([] { EXPECT_EQ(notify(5, "text"), error::Button::Ok); }),
              "velk: warning: text (source:12, 5)\n");
}

TEST_F(Messages, MayLeadToOthersOfTheSameThread)
{
    int shown = 0;
    installMessageBox([&shown](const error::Message& message) {
        ++shown;
        if (message.id == 1)
            notify(2, "inner");
        return error::Button::Ok;
    });
    notify(1, "outer");
    EXPECT_EQ(shown, 2);
}

TEST_F(Messages, ComeFromSeveralThreads)
{
    test::onThreads(4, [](std::size_t) {
        for (int n = 0; n < 50; ++n)
            notify(n, "text");
    });
    EXPECT_EQ(messages().size(), 200u);
}

TEST_F(Messages, OfSeveralThreadsAreWholeLinesOnStandardError)
{
    Velk::installHost({});
    const std::string lines = standardErrorOf([] {
        test::onThreads(4, [](std::size_t) {
            for (int n = 0; n < 100; ++n)
                notify(5, std::string(100, 'x'));
        });
    });
    const std::string line = "velk: warning: " + std::string(100, 'x') + " (source:12, 5)\n";
    std::string expected;
    for (int n = 0; n < 400; ++n)
        expected += line;
    EXPECT_TRUE(lines == expected);
}

TEST_F(Messages, AreFormattedByTheirNumberedText)
{
    Velk::HostServices changed = services();
    changed.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
        switch (id) {
            case 7:
                return U"%3%, %2% \u0438 %1%";
            case 8:
                return U"100 % of %1%";
            case 9:
                return U"";
            default:
                return std::nullopt;
        }
    };
    Velk::installHost(std::move(changed));
    error::Message message{"source", 1, {}, 7, U"a", U"\u00FC", U"c"};
    EXPECT_EQ(message.formatted(), "c, \xC3\xBC \xD0\xB8 a");
    message.id = 8;
    EXPECT_EQ(message.formatted(), "100 % of a");
    for (const long withoutText : {9L, 10L, 0L, -7L}) {
        message.id = withoutText;
        EXPECT_EQ(message.formatted(), "a \xC3\xBC c") << withoutText;
    }
    message.detail1.clear();
    EXPECT_EQ(message.formatted(), "a c");
}

TEST(MessageTraits, AreAWarningAndAnErrorWithOneButton)
{
    EXPECT_EQ(error::WarningTrait().severity, error::Severity::Warning);
    EXPECT_EQ(error::WarningTrait().buttons, error::Buttons::Ok);
    EXPECT_EQ(error::ErrorMinimalTrait().severity, error::Severity::Error);
    EXPECT_EQ(error::ErrorMinimalTrait().buttons, error::Buttons::Ok);
    EXPECT_EQ(&error::WarningTrait(), &error::WarningTrait());
    EXPECT_EQ(&error::ErrorMinimalTrait(), &error::ErrorMinimalTrait());
}

#ifndef _WIN32
TEST(SystemError, IsTheTextOfTheLastOne)
{
    for (const int number : {ENOENT, EACCES, ENOSPC}) {
        const std::string expected = std::strerror(number);
        errno = number;
        const std::wstring text = error::getSystemError();
        EXPECT_EQ(StringConvert::toStdUtf8String(StringConvert::toUnicode(text)), expected);
    }
}
#endif

}  // namespace
