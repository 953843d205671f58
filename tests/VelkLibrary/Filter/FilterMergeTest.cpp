#include <VelkLibrary/LibraryFilterManager.h>

#include "FilterTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <random>
#include <set>

namespace {

using test::describe;
using test::filterText;
using testing::ElementsAre;
using testing::IsEmpty;

struct MergeCase
{
    const char* name;
    std::vector<LibraryFilter> file;  // in the order in which the file is read
    std::vector<LibraryFilter> own;
    std::vector<std::string> merged;
};

void PrintTo(const MergeCase& row, std::ostream* out)
{
    *out << testing::PrintToString(describe(row.own)) << " into " << testing::PrintToString(describe(row.file));
}

class FilterMerge : public test::FilterTest
{
protected:
    // The last one stands first.
    static void write(const std::vector<LibraryFilter>& filters, const std::string& current)
    {
        std::string text = "{" + current;
        for (auto filter = filters.rbegin(); filter != filters.rend(); ++filter) {
            std::string ids;
            for (const std::string& id : filter->getDatabaseIds())
                ids += (ids.empty() ? "\"" : ", \"") + id + "\"";
            text += (text == "{" ? "" : ", ") + filterText(filter->getFilterName(), filter->getFilterId(), ids);
        }
        test::writeFile(target(), text + "}");
    }

    static fileString target() { return PathUtils::getObject().getTempPath() / std::u32string(U"filters.json"); }
};

class MergedFilters : public FilterMerge, public testing::WithParamInterface<MergeCase>
{};

TEST_P(MergedFilters, GetIdsAndNamesThatAreFree)
{
    write(GetParam().file, "\"Current_Filter\": 4");
    manager().setLibraryFilters(GetParam().own);
    manager().setCurrentFilterId(99);
    EXPECT_TRUE(manager().mergeFilters(target()));
    EXPECT_EQ(filters(), GetParam().merged);
    EXPECT_EQ(manager().getCurrentFilterId(), 4);
    // The file holds the same; read again, the last one comes first.
    load(target());
    std::vector<std::string> reversed = GetParam().merged;
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(filters(), reversed);
    EXPECT_THAT(assertions(), IsEmpty());
}

// clang-format off
const MergeCase merges[] = {
    {"NothingIntoNothing", {}, {}, {}},
    {"NothingIntoOne",  {{"A", 7, {"x"}}}, {}, {"7 A [x]"}},
    {"IdsAreNotKept",   {}, {{"A", 7, {"x"}}, {"B", 9, {}}}, {"0 A [x]", "1 B []"}},
    {"EqualOnesOnce",   {{"Baths", 0, {"x"}}}, {{"Baths", 5, {"x"}}}, {"0 Baths [x]"}},
    {"EqualToAddedOnes", {}, {{"Baths", 5, {"x"}}, {"Baths", 6, {"x"}}}, {"0 Baths [x]"}},
    {"NumberedName",    {{"Baths", 0, {"y"}}, {"Other", 1, {}}}, {{"Baths", 0, {"x"}}},
                        {"0 Baths [y]", "1 Other []", "2 Baths 1 [x]"}},
    {"FreeIdsBetween",  {{"A", 0, {}}, {"B", 2, {}}}, {{"C", 0, {}}, {"D", 0, {}}},
                        {"0 A []", "2 B []", "1 C []", "3 D []"}},
    {"NegativeIdsAreNoMatter", {{"A", -5, {}}}, {{"B", 1, {}}}, {"-5 A []", "0 B []"}},
    {"NextNumbers",     {{"B", 0, {}}}, {{"B", 0, {"x"}}, {"B", 0, {"y"}}, {"B", 0, {"z"}}},
                        {"0 B []", "1 B 1 [x]", "2 B 2 [y]", "3 B 3 [z]"}},
    {"TakenNumbers",    {{"B", 0, {}}, {"B 1", 1, {}}, {"B 3", 2, {}}}, {{"B", 0, {"x"}}, {"B", 0, {"y"}}},
                        {"0 B []", "1 B 1 []", "2 B 3 []", "3 B 2 [x]", "4 B 4 [y]"}},
    {"NumberOfANumberedOne", {{"B", 0, {}}}, {{"B", 0, {"x"}}, {"B 1", 0, {"y"}}},
                        {"0 B []", "1 B 1 [x]", "2 B 1 1 [y]"}},
    {"NumberedOneEqual", {{"B", 0, {}}, {"B 1", 1, {"x"}}}, {{"B 1", 0, {"x"}}, {"B", 0, {"x"}}},
                        {"0 B []", "1 B 1 [x]", "2 B 2 [x]"}},
    {"EqualOnlyInOrder", {{"A", 0, {"x", "y"}}}, {{"A", 0, {"y", "x"}}}, {"0 A [x, y]", "1 A 1 [y, x]"}},
    {"EqualOnlyInCount", {{"A", 0, {"x"}}}, {{"A", 0, {"x", "x"}}}, {"0 A [x]", "1 A 1 [x, x]"}},
    {"EqualIdsOtherName", {{"A", 0, {"x"}}}, {{"a", 0, {"x"}}}, {"0 A [x]", "1 a [x]"}},
    {"SplitOtherwise",  {{"A", 0, {"xy"}}}, {{"A", 0, {"x", "y"}}}, {"0 A [xy]", "1 A 1 [x, y]"}},
    {"FileIsNotCleanedUp", {{"A", 1, {}}, {"A", 1, {}}}, {{"A", 0, {}}}, {"1 A []", "1 A []"}},
    {"ZeroIsAnIdLikeOthers", {{"A", 1, {}}}, {{"B", 1, {}}, {"C", 1, {}}}, {"1 A []", "0 B []", "2 C []"}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(FilterMerge, MergedFilters, testing::ValuesIn(merges),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FilterMerge, IntoAMissingFileMakesOneWithoutCurrentFilter)
{
    manager().setLibraryFilters({{"A", 7, {"x"}}});
    manager().setCurrentFilterId(7);
    EXPECT_TRUE(manager().mergeFilters(target()));
    EXPECT_THAT(filters(), ElementsAre("0 A [x]"));
    EXPECT_EQ(manager().getCurrentFilterId(), -1);
    EXPECT_TRUE(target().pathExists());
    EXPECT_FALSE(filterFile().pathExists()) << "the merge writes another file";
}

TEST_F(FilterMerge, IntoAFileThatIsNotADocumentReplacesIt)
{
    test::writeFile(target(), "no JSON");
    manager().setLibraryFilters({{"A", 7, {"x"}}});
    EXPECT_TRUE(manager().mergeFilters(target()));
    EXPECT_THAT(filters(), ElementsAre("0 A [x]"));
}

TEST_F(FilterMerge, GoesOnAfterAFault)
{
    test::writeFile(target(), "{\"Current_Filter\": 3, \"Filter\": 1, " + filterText("B", 2, "") + "}");
    manager().setLibraryFilters({{"A", 7, {"x"}}});
    EXPECT_TRUE(manager().mergeFilters(target()));
    EXPECT_THAT(filters(), ElementsAre("2 B []", "0 A [x]"));
    EXPECT_EQ(manager().getCurrentFilterId(), 3);
    expectReport(test::reportLine::filtersUnreadable, "Error Parsing Library Filter Data File");
}

TEST_F(FilterMerge, ThatCannotBeWrittenChangesNothing)
{
    manager().setLibraryFilters({{"A", 7, {"x"}}});
    manager().setCurrentFilterId(7);
    EXPECT_FALSE(
        manager().mergeFilters(PathUtils::getObject().getTempPath() / std::u32string(U"missing/filters.json")));
    EXPECT_THAT(filters(), ElementsAre("7 A [x]"));
    EXPECT_EQ(manager().getCurrentFilterId(), 7);
    expectReport(test::reportLine::filtersNotWritten, "Error Writing Library Filter Data File");
}

TEST_F(FilterMerge, IntoWhatMayNotBeWrittenChangesNothing)
{
    std::filesystem::create_directory(target().utf8());
    manager().setLibraryFilters({{"A", 7, {"x"}}});
    manager().setCurrentFilterId(7);
    EXPECT_FALSE(manager().mergeFilters(target()));
    EXPECT_THAT(filters(), ElementsAre("7 A [x]"));
    EXPECT_EQ(manager().getCurrentFilterId(), 7);
    ASSERT_EQ(messages().size(), 1U);
    EXPECT_EQ(messages().front().line, test::reportLine::filtersUnwritable);
    EXPECT_EQ(messages().front().text, target().unicodeString());
}

TEST_F(FilterMerge, LeavesTheForcedFilter)
{
    manager().setForcedSystemDBFilter(std::make_unique<LibraryFilter>("F", 0, std::vector<std::string>{"x"}));
    EXPECT_TRUE(manager().mergeFilters(target()));
    EXPECT_TRUE(manager().isForcedFilteredDatabase("x"));
    EXPECT_THAT(filters(), IsEmpty());
}

// Does the same step by step, exactly as described, however slow that is.
std::vector<LibraryFilter> mergedSlowly(std::vector<LibraryFilter> merged, const std::vector<LibraryFilter>& own)
{
    std::set<long> ids;
    std::set<std::string> names;
    for (const LibraryFilter& filter : merged) {
        ids.insert(filter.getFilterId());
        names.insert(filter.getFilterName());
    }
    long nextId = 0;
    for (const LibraryFilter& filter : own) {
        const auto isEqual = [&](const LibraryFilter& other) {
            return other.getFilterName() == filter.getFilterName() && other.getDatabaseIds() == filter.getDatabaseIds();
        };
        if (std::any_of(merged.begin(), merged.end(), isEqual))
            continue;
        while (ids.count(nextId) > 0)
            ++nextId;
        std::string name = filter.getFilterName();
        for (int number = 1; names.count(name) > 0; ++number)
            name = filter.getFilterName() + " " + std::to_string(number);
        ids.insert(nextId);
        names.insert(name);
        merged.emplace_back(name, nextId, filter.getDatabaseIds());
    }
    return merged;
}

TEST_F(FilterMerge, AgreesWithTheDescription)
{
    std::mt19937 random(5);
    const auto randomFilters = [&random] {
        std::vector<LibraryFilter> filters;
        for (auto count = random() % 12; count > 0; --count) {
            const std::string number = random() % 2 == 0 ? "" : " " + std::to_string(random() % 4);
            std::vector<std::string> ids(random() % 3, std::string(1, static_cast<char>('x' + random() % 2)));
            filters.emplace_back((random() % 2 == 0 ? "A" : "B") + number, static_cast<long>(random() % 9), ids);
        }
        return filters;
    };
    for (int round = 0; round < 80; ++round) {
        const auto file = randomFilters();
        const auto own = randomFilters();
        write(file, "");
        manager().setLibraryFilters(own);
        ASSERT_TRUE(manager().mergeFilters(target()));
        ASSERT_EQ(filters(), describe(mergedSlowly(file, own)));
    }
}

// Equal names, each with a number to be found: quadratic work would take minutes.
TEST_F(FilterMerge, OfManyFiltersOfOneName)
{
    constexpr long count = 10'000;
    std::vector<LibraryFilter> file;
    std::vector<LibraryFilter> own;
    for (long i = 0; i < count; ++i) {
        file.emplace_back(i == 0 ? "Baths" : "Baths " + std::to_string(i), i, std::vector<std::string>{"f"});
        own.emplace_back("Baths", i, std::vector<std::string>{"o" + std::to_string(i)});
    }
    write(file, "");
    manager().setLibraryFilters(own);
    ASSERT_TRUE(manager().mergeFilters(target()));
    ASSERT_EQ(manager().getLibraryFilters().size(), 2U * count);
    EXPECT_EQ(describe(manager().getLibraryFilters().back()), "19999 Baths 19999 [o9999]");
}

}  // namespace
