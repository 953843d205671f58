#include <VelkLibrary/LibraryFilterManager.h>

#include "FilterTest.h"
#include "support/Numbers.h"
#include "support/Processes.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

// What happens at the first use in a process. This program itself never uses the manager; only its children do.

namespace {

using test::describe;
using test::filterText;
using testing::ElementsAre;
using testing::IsEmpty;

class FilterStart : public test::TestHost
{
protected:
    static LibraryFilterManager& manager() { return LibraryFilterManager::getLibraryFilterManager(); }

    static fileString filterFile()
    {
        return PathUtils::getObject().getCoreLibraryDatabasePath() + fileString(std::string("catalog_filters.json"));
    }
};

TEST_F(FilterStart, WithoutAFile)
{
    test::inChild([this] {
        EXPECT_EQ(manager().getCurrentFilterId(), -1);
        EXPECT_THAT(manager().getLibraryFilters(), IsEmpty());
        EXPECT_FALSE(manager().hasActiveFilter());
        EXPECT_THAT(manager().getFilterStrings(), ElementsAre("No filter"));
        EXPECT_FALSE(manager().isForcedFilteredDatabase(""));
        EXPECT_THAT(assertions(), IsEmpty());
    });
    EXPECT_FALSE(filterFile().pathExists());
}

TEST_F(FilterStart, LoadsTheFileInReverse)
{
    test::writeFile(filterFile(), "{\"Current_Filter\": 3, " + filterText("A", 1, "\"x\"") + ", " +
                                      filterText("B", 2, "") + ", " + filterText("C", 3, "\"y\"") + "}");
    test::inChild([] {
        EXPECT_THAT(describe(manager().getLibraryFilters()), ElementsAre("3 C [y]", "2 B []", "1 A [x]"));
        EXPECT_EQ(manager().getCurrentFilterString(), "C");
        EXPECT_TRUE(manager().isFilteredDatabase("y"));
        manager().saveFilters();
    });
    test::inChild([] {
        EXPECT_THAT(describe(manager().getLibraryFilters()), ElementsAre("1 A [x]", "2 B []", "3 C [y]"));
        EXPECT_EQ(manager().getCurrentFilterId(), 3);
    });
}

TEST_F(FilterStart, ReadsTheFileOnce)
{
    test::writeFile(filterFile(), "{" + filterText("A", 1, "") + "}");
    test::inChild([] {
        EXPECT_EQ(manager().getLibraryFilters().size(), 1U);
        test::writeFile(filterFile(), "{}");
        EXPECT_EQ(manager().getLibraryFilters().size(), 1U);
    });
}

TEST_F(FilterStart, ReportsAFault)
{
    test::writeFile(filterFile(), R"({"Current_Filter": 3, "Filter": 1})");
    test::inChild([this] {
        EXPECT_EQ(manager().getCurrentFilterId(), 3);
        EXPECT_TRUE(manager().hasActiveFilter());
        ASSERT_EQ(assertions().size(), 1U);
        EXPECT_EQ(assertions().front().line, test::reportLine::filtersUnreadable);
    });
}

// A host that is told of a fault may show something, and with it the filters.
TEST_F(FilterStart, MayBeUsedByAHostThatIsToldOfAFault)
{
    test::writeFile(filterFile(), R"({"Current_Filter": 3, "Filter": 1})");
    test::inChild([this] {
        Velk::HostServices host = services();
        long seen = -1;
        int reports = 0;
        host.reportAssertion = [&](const auto&...) {
            ++reports;
            seen = manager().getCurrentFilterId();
            return true;
        };
        Velk::installHost(std::move(host));
        EXPECT_EQ(manager().getCurrentFilterId(), 3);
        EXPECT_EQ(seen, 3);
        EXPECT_EQ(reports, 1);
        Velk::installHost({});  // it does not outlive what it refers to
    });
}

TEST_F(FilterStart, MakesOneInstanceForManyThreads)
{
    test::writeFile(filterFile(), "{" + filterText("A", 1, "") + "}");
    test::inChild([] {
        std::vector<LibraryFilterManager*> seen(8);
        test::onThreads(seen.size(), [&](std::size_t i) { seen[i] = &manager(); });
        EXPECT_THAT(seen, testing::Each(&manager()));
        EXPECT_EQ(manager().getLibraryFilters().size(), 1U);
    });
}

TEST_F(FilterStart, NothingIsSavedAtTheEndOfTheProcess)
{
    test::inChild([] { manager().setLibraryFilters({{"A", 1, {}}}); });
    EXPECT_FALSE(filterFile().pathExists());
}

TEST_F(FilterStart, AReadOnlyFileIsReportedAndLeft)
{
    ::chmod(folder().utf8().c_str(), 0777);
    ::chmod(PathUtils::getObject().getCoreLibraryDatabasePath().utf8().c_str(), 0777);
    test::writeFile(filterFile(), "{" + filterText("A", 1, "") + "}");
    ASSERT_EQ(::chmod(filterFile().utf8().c_str(), 0444), 0);
    const std::string before = test::readFile(filterFile());
    test::asOrdinaryUser([this] {
        EXPECT_EQ(manager().getLibraryFilters().size(), 1U);
        manager().setCurrentFilterId(1);
        manager().saveFilters();
        EXPECT_FALSE(manager().mergeFilters(filterFile()));
        EXPECT_EQ(manager().getCurrentFilterId(), 1);
        ASSERT_EQ(messages().size(), 2U);
        EXPECT_EQ(messages().front().line, test::reportLine::filtersUnwritable);
        EXPECT_EQ(messages().front().id, test::messageId::fileUnwritable);
        EXPECT_THAT(assertions(), IsEmpty());
    });
    EXPECT_EQ(test::readFile(filterFile()), before);
}

TEST_F(FilterStart, AFileThatMayNotBeReadIsReported)
{
    ::chmod(folder().utf8().c_str(), 0777);
    test::writeFile(filterFile(), "{" + filterText("A", 1, "") + "}");
    ASSERT_EQ(::chmod(filterFile().utf8().c_str(), 0), 0);
    test::asOrdinaryUser([this] {
        EXPECT_THAT(manager().getLibraryFilters(), IsEmpty());
        ASSERT_EQ(assertions().size(), 1U);
        EXPECT_EQ(assertions().front().line, test::reportLine::filtersUnreadable);
    });
}

}  // namespace
