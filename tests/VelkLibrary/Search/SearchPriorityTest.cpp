#include <VelkLibrary/SearchPriority.h>

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <type_traits>

namespace {

using Utils = SearchPriorityUtils;

constexpr int lowest = std::numeric_limits<std::int16_t>::min();
constexpr int highest = std::numeric_limits<std::int16_t>::max();

SearchPriority priority(int value)
{
    return static_cast<SearchPriority>(value);
}

TEST(SearchPriority, IsASigned16BitNumber)
{
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<SearchPriority>, std::int16_t>));
}

TEST(SearchPriorityUtils, SixValuesAreFolders)
{
    const std::set<int> folders{2, 4, 6, 8, 11, 13};
    for (int value = lowest; value <= highest; ++value)
        ASSERT_EQ(Utils::IsFolder(priority(value)), folders.count(value) == 1) << value;
}

TEST(SearchPriorityUtils, HigherTreatsZeroAsNone)
{
    EXPECT_EQ(Utils::higher(Invalid, Invalid), Invalid);
    for (const int value : {lowest, -1, 1, 9, 14, 15, highest}) {
        EXPECT_EQ(Utils::higher(priority(value), Invalid), priority(value));
        EXPECT_EQ(Utils::higher(Invalid, priority(value)), priority(value));
    }
}

TEST(SearchPriorityUtils, HigherIsTheSmallerNumber)
{
    EXPECT_EQ(Utils::higher(ItemContainsSequence, ItemExactName), ItemExactName);
    EXPECT_EQ(Utils::higher(FolderExactName, ItemExactName), ItemExactName);
    EXPECT_EQ(Utils::higher(ItemBeginsWithWord, KeywordsContainWord), ItemBeginsWithWord);
    EXPECT_EQ(Utils::higher(ItemExactName, ItemExactName), ItemExactName);
    EXPECT_EQ(Utils::higher(priority(-1), ItemExactName), priority(-1));
    EXPECT_EQ(Utils::higher(priority(lowest), priority(highest)), priority(lowest));
}

struct TextCase
{
    int value;
    const char* text;
};

const TextCase textCases[] = {
    {0, "Invalid"},
    {1, "ItemExactName"},
    {2, "FolderExactName"},
    {3, "ItemBeginsWithWord"},
    {4, "FolderBeginsWithWord"},
    {5, "ItemContainsWord"},
    {6, "FolderContainsWord"},
    {7, "ItemBeginsWithSequence"},
    {8, "FolderBeginsWithSequence"},
    {9, "KeywordsContainWord"},
    {10, ""},
    {11, "FolderWordBeginsWithSequence"},
    {12, "ItemContainsSequence"},
    {13, "FolderContainsSequence"},
    {14, "KeywordsContainSequence"},
    {15, ""},
    {-1, ""},
    {lowest, ""},
    {highest, ""},
};

TEST(SearchPriorityUtils, TextsAreTheNames)
{
    for (int round = 0; round < 2; ++round) {
        for (const TextCase& row : textCases)
            EXPECT_EQ(Utils::to_string(priority(row.value)), row.text) << row.value;
    }
}

TEST(SearchPriorityUtils, NamesHaveTheirNumbers)
{
    EXPECT_EQ(ItemExactName, 1);
    EXPECT_EQ(FolderBeginsWithSequence, 8);
    EXPECT_EQ(ItemWordBeginsWithSequence, 10);
    EXPECT_EQ(FolderWordBeginsWithSequence, 11);
    EXPECT_EQ(SearchPriority::KeywordsContainSequence, 14);
}

}  // namespace
