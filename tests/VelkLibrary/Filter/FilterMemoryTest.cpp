// What a merge of filters leaves when an allocation fails. A program by itself, as its `operator new` can be told to
// fail.
#include "FilterTest.h"
#include "support/CountedMemory.h"

#include <gmock/gmock.h>

namespace {

using test::filterText;
using testing::ElementsAre;

class FilterMemory : public test::FilterTest
{
protected:
    ~FilterMemory() override { test::failingAllocation = SIZE_MAX; }

    /// Merges one filter into a file with another one, and fails at that allocation. True when none failed.
    bool mergeFailingAt(std::size_t allocation)
    {
        const std::string before = "{\"Current_Filter\": 1, " + filterText("Kitchens", 1, "\"a\", \"b\"") + "}";
        const fileString path = folder() / U"filters.json";
        test::writeFile(path, before);
        manager().setLibraryFilters({{"Baths", 5, {"c"}}});
        manager().setCurrentFilterId(5);
        test::refusedAllocations = 0;
        test::failingAllocation = allocation;
        const bool merged = manager().mergeFilters(path);
        test::failingAllocation = SIZE_MAX;
        if (merged) {
            EXPECT_THAT(filters(), ElementsAre("1 Kitchens [a, b]", "0 Baths [c]")) << allocation;
            EXPECT_EQ(manager().getCurrentFilterId(), 1) << allocation;
        } else {
            EXPECT_THAT(filters(), ElementsAre("5 Baths [c]")) << allocation;
            EXPECT_EQ(manager().getCurrentFilterId(), 5) << allocation;
            EXPECT_EQ(test::readFile(path), before) << allocation;
        }
        return test::refusedAllocations == 0;
    }
};

TEST_F(FilterMemory, AMergeIsDoneWholeOrNotAtAll)
{
    constexpr std::size_t beyondAll = 100'000;
    std::size_t allocation = 0;
    while (allocation < beyondAll && !mergeFailingAt(allocation))
        ++allocation;
    EXPECT_GT(allocation, 20U) << "the allocations of a merge were met one by one";
    EXPECT_LT(allocation, beyondAll);
}

}  // namespace
