#include <VelkLibrary/LibraryFilter.h>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(LibraryFilter, HoldsWhatItIsGiven)
{
    const LibraryFilter filter("Kitchens", 7, {"b", "a", "b", ""});
    EXPECT_EQ(filter.getFilterName(), "Kitchens");
    EXPECT_EQ(filter.getFilterId(), 7);
    EXPECT_THAT(filter.getDatabaseIds(), ElementsAre("b", "a", "b", ""));
}

TEST(LibraryFilter, CanBeChanged)
{
    LibraryFilter filter("Kitchens", 7, {"a"});
    filter.setFilterName("Baths");
    filter.setFilterId(-1);
    filter.setDatabaseIds({"c", "b"});
    EXPECT_EQ(filter.getFilterName(), "Baths");
    EXPECT_EQ(filter.getFilterId(), -1);
    EXPECT_THAT(filter.getDatabaseIds(), ElementsAre("c", "b"));
    filter.setDatabaseIds(filter.getDatabaseIds());
    EXPECT_THAT(filter.getDatabaseIds(), ElementsAre("c", "b"));
}

TEST(LibraryFilter, CopiesShareNothing)
{
    LibraryFilter filter("Kitchens", 7, {"a", "b"});
    LibraryFilter copy = filter;
    copy.removeDatabaseId("a");
    copy.setFilterName("Copy");
    EXPECT_THAT(filter.getDatabaseIds(), ElementsAre("a", "b"));
    EXPECT_EQ(filter.getFilterName(), "Kitchens");
    filter = copy;
    EXPECT_THAT(filter.getDatabaseIds(), ElementsAre("b"));
}

struct RemovalCase
{
    const char* name;
    std::vector<std::string> ids;
    std::string id;
    std::vector<std::string> left;
};

void PrintTo(const RemovalCase& row, std::ostream* out)
{
    *out << "without '" << row.id << "'";
}

class RemovedDatabaseId : public testing::TestWithParam<RemovalCase>
{};

TEST_P(RemovedDatabaseId, LeavesTheOthers)
{
    LibraryFilter filter("Kitchens", 1, GetParam().ids);
    filter.removeDatabaseId(GetParam().id);
    EXPECT_EQ(filter.getDatabaseIds(), GetParam().left);
}

// clang-format off
const RemovalCase removals[] = {
    {"FromNothing",   {},                   "a",    {}},
    {"Unknown",       {"a", "b"},           "c",    {"a", "b"}},
    {"OnlyTheFirst",  {"a", "b", "c", "b"}, "b",    {"a", "c", "b"}},
    {"TheLastOne",    {"a"},                "a",    {}},
    {"OtherCase",     {"Lib1"},             "lib1", {"Lib1"}},
    {"Prefix",        {"Lib10"},            "Lib1", {"Lib10"}},
    {"NotTrimmed",    {" a", "a "},         "a",    {" a", "a "}},
    {"Empty",         {"a", "", "b"},       "",     {"a", "b"}},
    {"EmptyUnknown",  {"a"},                "",     {"a"}},
    {"ZeroByte",      {std::string("a\0b", 3)}, "a", {std::string("a\0b", 3)}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(LibraryFilter, RemovedDatabaseId, testing::ValuesIn(removals),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LibraryFilter, RemovesEveryCopyOneByOne)
{
    LibraryFilter filter("Kitchens", 1, {"b", "a", "b"});
    filter.removeDatabaseId("b");
    filter.removeDatabaseId("b");
    filter.removeDatabaseId("a");
    EXPECT_THAT(filter.getDatabaseIds(), IsEmpty());
}

}  // namespace
