#include <VelkLibrary/LibraryFilterManager.h>

#include "FilterTest.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FilterManager : public test::FilterTest
{
protected:
    static void useKitchensAndBaths()
    {
        manager().setLibraryFilters({{"Kitchens", 1, {"a", "b"}}, {"Baths", 2, {"c"}}});
    }
};

TEST_F(FilterManager, IsOne)
{
    EXPECT_EQ(&manager(), &LibraryFilterManager::getLibraryFilterManager());
}

TEST_F(FilterManager, WithoutFilters)
{
    EXPECT_EQ(manager().getCurrentFilterId(), -1);
    EXPECT_FALSE(manager().hasActiveFilter());
    EXPECT_EQ(manager().getCurrentFilterString(), "No filter here");
    EXPECT_THAT(manager().getFilterStrings(), ElementsAre("No filter here"));
    EXPECT_THAT(manager().getCurrentFilteredDatabases(), IsEmpty());
    EXPECT_FALSE(manager().isFilteredDatabase("a"));
    EXPECT_FALSE(manager().isForcedFilteredDatabase("a"));
}

TEST_F(FilterManager, WithACurrentFilter)
{
    useKitchensAndBaths();
    manager().setCurrentFilterId(1);
    EXPECT_TRUE(manager().hasActiveFilter());
    EXPECT_EQ(manager().getCurrentFilterString(), "Kitchens");
    EXPECT_THAT(manager().getFilterStrings(), ElementsAre("No filter here", "Kitchens", "Baths"));
    EXPECT_THAT(manager().getCurrentFilteredDatabases(), ElementsAre("a", "b"));
    EXPECT_TRUE(manager().isFilteredDatabase("b"));
    EXPECT_FALSE(manager().isFilteredDatabase("B"));
    EXPECT_FALSE(manager().isFilteredDatabase("c"));
}

TEST_F(FilterManager, WithoutACurrentFilterNothingIsFiltered)
{
    useKitchensAndBaths();
    EXPECT_FALSE(manager().hasActiveFilter());
    EXPECT_EQ(manager().getCurrentFilterString(), "No filter here");
    EXPECT_THAT(manager().getCurrentFilteredDatabases(), IsEmpty());
    EXPECT_FALSE(manager().isFilteredDatabase("a"));
}

TEST_F(FilterManager, WithACurrentIdThatNoFilterHas)
{
    useKitchensAndBaths();
    manager().setCurrentFilterId(5);
    EXPECT_TRUE(manager().hasActiveFilter());
    EXPECT_EQ(manager().getCurrentFilterString(), "No filter here");
    EXPECT_THAT(manager().getCurrentFilteredDatabases(), IsEmpty());
    EXPECT_FALSE(manager().isFilteredDatabase("a"));
    EXPECT_FALSE(manager().isFilteredDatabase(""));
}

TEST_F(FilterManager, FindsTheFirstFilterWithAnId)
{
    const std::vector<LibraryFilter> filters{{"A", 3, {"x"}}, {"B", 3, {"y"}}, {"C", 4, {}}};
    EXPECT_EQ(test::describe(LibraryFilterManager::getLibraryFilterFromId(3, filters)), "3 A [x]");
    EXPECT_EQ(test::describe(LibraryFilterManager::getLibraryFilterFromId(4, filters)), "4 C []");
    EXPECT_EQ(test::describe(LibraryFilterManager::getLibraryFilterFromId(5, filters)), "-1  []");
    EXPECT_EQ(test::describe(LibraryFilterManager::getLibraryFilterFromId(-1, {})), "-1  []");
}

TEST_F(FilterManager, AsksTheHostForTheTextEachTime)
{
    EXPECT_EQ(manager().getCurrentFilterString(), "No filter here");
    Velk::HostServices host = services();
    host.resourceString = [](unsigned int) { return std::optional<std::u32string>(U"Kein Filter f\u00FCr Sie"); };
    Velk::installHost(std::move(host));
    EXPECT_THAT(manager().getFilterStrings(), ElementsAre("Kein Filter f\xC3\xBCr Sie"));
    EXPECT_EQ(manager().getCurrentFilterString(), "Kein Filter f\xC3\xBCr Sie");
}

TEST_F(FilterManager, KeepsACopyOfTheList)
{
    std::vector<LibraryFilter> filters{{"A", 1, {"x"}}};
    manager().setLibraryFilters(filters);
    filters.front().setFilterName("B");
    EXPECT_THAT(this->filters(), ElementsAre("1 A [x]"));
}

TEST_F(FilterManager, RemovesTheFirstEntryOfEachFilter)
{
    manager().setLibraryFilters({{"A", 1, {"x", "y", "x"}}, {"B", 2, {"y"}}, {"C", 3, {"x"}}});
    manager().setForcedSystemDBFilter(std::make_unique<LibraryFilter>("F", 9, std::vector<std::string>{"x"}));
    manager().removeIdFromLibraryFilters("x");
    EXPECT_THAT(filters(), ElementsAre("1 A [y, x]", "2 B [y]", "3 C []"));
    EXPECT_TRUE(manager().isForcedFilteredDatabase("x"));
}

TEST_F(FilterManager, RemovesAnIdThatRefersIntoTheList)
{
    manager().setLibraryFilters({{"A", 1, {"x", "y"}}, {"B", 2, {"x", "y"}}, {"C", 3, {"y", "x"}}});
    manager().removeIdFromLibraryFilters(manager().getLibraryFilters().front().getDatabaseIds().front());
    EXPECT_THAT(filters(), ElementsAre("1 A [y]", "2 B [y]", "3 C [y]"));
}

// ---- The forced filter ---------------------------------------------------------------------------

std::unique_ptr<LibraryFilter> forced(std::vector<std::string> ids)
{
    return std::make_unique<LibraryFilter>("Forced", 9, std::move(ids));
}

TEST_F(FilterManager, ForcesAFilterUntilItIsClearedOrReplaced)
{
    manager().setForcedSystemDBFilter(forced({"x"}));
    EXPECT_TRUE(manager().isForcedFilteredDatabase("x"));
    EXPECT_FALSE(manager().isForcedFilteredDatabase("X"));
    manager().setForcedSystemDBFilter(forced({"y"}));
    EXPECT_FALSE(manager().isForcedFilteredDatabase("x"));
    EXPECT_TRUE(manager().isForcedFilteredDatabase("y"));
    manager().setForcedSystemDBFilter(nullptr);
    EXPECT_FALSE(manager().isForcedFilteredDatabase("y"));
    manager().setForcedSystemDBFilter(forced({"y"}));
    manager().clearForcedSystemDBFilter();
    manager().clearForcedSystemDBFilter();
    EXPECT_FALSE(manager().isForcedFilteredDatabase("y"));
}

TEST_F(FilterManager, KeepsTheForcedFilterApartFromTheList)
{
    useKitchensAndBaths();
    manager().setForcedSystemDBFilter(forced({"x"}));
    manager().setCurrentFilterId(9);
    EXPECT_FALSE(manager().isFilteredDatabase("x"));
    EXPECT_EQ(manager().getFilterStrings().size(), 3U);
    manager().saveFilters();
    EXPECT_EQ(test::readFile(filterFile()).find("Forced"), std::string::npos);
}

}  // namespace
