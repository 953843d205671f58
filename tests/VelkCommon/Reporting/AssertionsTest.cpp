#include <VelkCommon/Reporting/Assertions.h>

#include "StandardError.h"
#include "support/Numbers.h"
#include "support/TestHost.h"

#include <stdexcept>

namespace {

class Assertions : public test::TestHost
{
protected:
    void installReporter(std::function<bool(const Velk::AssertionReport&)> reporter)
    {
        Velk::HostServices changed = services();
        changed.reportAssertion = std::move(reporter);
        Velk::installHost(std::move(changed));
    }

    void installSwitch(std::function<bool()> enabled)
    {
        Velk::HostServices changed = services();
        changed.assertionReportsEnabled = std::move(enabled);
        Velk::installHost(std::move(changed));
    }
};

TEST_F(Assertions, AreReportedUnlessTheHostSaysOtherwise)
{
    EXPECT_TRUE(showQAVerify());
    installSwitch([] { return false; });
    EXPECT_FALSE(showQAVerify());
    installSwitch([] { return true; });
    EXPECT_TRUE(showQAVerify());
    installSwitch([]() -> bool { throw std::runtime_error("no settings"); });
    EXPECT_TRUE(showQAVerify());
}

TEST_F(Assertions, ReachTheHostWithTheirPlace)
{
    EXPECT_FALSE(notifyAssert("LibraryFilterManager", test::reportLine::filtersUnwritable, Velk::softAssertion,
                              "!path.empty()"));
    ASSERT_EQ(assertions().size(), 1u);
    EXPECT_EQ(assertions()[0].sourceFile, "LibraryFilterManager");
    EXPECT_EQ(assertions()[0].line, test::reportLine::filtersUnwritable);
    EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
    EXPECT_EQ(assertions()[0].expression, "!path.empty()");
}

TEST_F(Assertions, HandBackTheHostsWishToBreak)
{
    installReporter([](const Velk::AssertionReport&) { return true; });
    EXPECT_TRUE(notifyAssert("source", 1, Velk::softAssertion, "false"));
}

TEST_F(Assertions, WithoutTextsAreReportedAllTheSame)
{
    EXPECT_FALSE(notifyAssert(nullptr, 0, Velk::softAssertion, nullptr));
    ASSERT_EQ(assertions().size(), 1u);
    EXPECT_EQ(assertions()[0].sourceFile, "");
    EXPECT_EQ(assertions()[0].expression, "");
}

TEST_F(Assertions, GoToStandardErrorWithoutAHost)
{
    Velk::installHost({});
    EXPECT_EQ(standardErrorOf([] { EXPECT_FALSE(notifyAssert("source", 12, Velk::softAssertion, "x > 0")); }),
              "velk: assertion failed: x > 0 (source:12)\n");
}

TEST_F(Assertions, GoToStandardErrorWhenTheHostThrows)
{
    installReporter([](const Velk::AssertionReport&) -> bool { throw std::runtime_error("no reporter"); });
    EXPECT_EQ(standardErrorOf([] { EXPECT_FALSE(notifyAssert("source", 12, Velk::softAssertion, "x\n> 0\r")); }),
              "velk: assertion failed: x > 0  (source:12)\n");
}

TEST_F(Assertions, ThatFailAreReportedAsSoftOnes)
{
    Velk::assertionFailed("JsonReader", 77, "root");
    ASSERT_EQ(assertions().size(), 1u);
    EXPECT_EQ(assertions()[0].sourceFile, "JsonReader");
    EXPECT_EQ(assertions()[0].line, 77u);
    EXPECT_EQ(assertions()[0].kind, Velk::softAssertion);
    EXPECT_EQ(Velk::softAssertion, -4);
    EXPECT_EQ(assertions()[0].expression, "root");
}

TEST_F(Assertions, ThatFailAreSilentWhereReportsAreDisabled)
{
    installSwitch([] { return false; });
    Velk::assertionFailed("JsonReader", 77, "root");
    EXPECT_TRUE(assertions().empty());
}

TEST_F(Assertions, ThatFailAskTheSwitchFirst)
{
    std::string order;
    Velk::HostServices changed = services();
    changed.assertionReportsEnabled = [&order] {
        order += "enabled? ";
        return true;
    };
    changed.reportAssertion = [&order](const Velk::AssertionReport&) {
        order += "report";
        return false;
    };
    Velk::installHost(std::move(changed));
    Velk::assertionFailed("source", 1, "false");
    EXPECT_EQ(order, "enabled? report");
}

// No debugger is attached to a test, so a break would end the process.
TEST_F(Assertions, ThatFailGoOnWithoutADebugger)
{
    int reports = 0;
    installReporter([&reports](const Velk::AssertionReport&) {
        ++reports;
        return true;
    });
    Velk::assertionFailed("source", 1, "false");
    EXPECT_EQ(reports, 1);
}

}  // namespace
