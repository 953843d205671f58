#include <VelkLibrary/Filter/FreeFilterIds.h>

#include <gtest/gtest.h>

namespace {

const std::vector<LibraryFilter> filters{{"A", 3, {}}, {"B", 1, {}}, {"C", -1, {}}, {"D", 1, {}}};

TEST(FreeFilterIds, AreTheLowestThatNoFilterHas)
{
    FreeFilterIds ids(filters, 0);
    EXPECT_EQ(ids.take(), 0);
    EXPECT_EQ(ids.take(), 2);
    EXPECT_EQ(ids.take(), 4);
    EXPECT_EQ(ids.take(), 5);
}

TEST(FreeFilterIds, BeginWhereTheyAreToldTo)
{
    EXPECT_EQ(FreeFilterIds({}, 1).take(), 1);
    EXPECT_EQ(FreeFilterIds(filters, 1).take(), 2);
}

}  // namespace
