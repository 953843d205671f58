#include <VelkLibrary/JsonReader.h>

#include "JsonTree.h"
#include "support/SmallStack.h"

#include <gtest/gtest.h>

namespace {

// The size of a thread's stack on Windows. Under the address sanitizer a level takes ten times as much stack.
#if defined(__SANITIZE_ADDRESS__)
constexpr unsigned smallStack = 8U << 20;
#else
constexpr unsigned smallStack = 1U << 20;
#endif

std::string repeated(std::string_view text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string nestedArrays(int levels)
{
    return repeated("[", levels) + repeated("]", levels);
}

std::string nestedObjects(int levels)
{
    return repeated("{\"a\":", levels) + "1" + repeated("}", levels);
}

// How deep arrays and objects are nested, following the first element of each.
int levelsOf(const test::JsonNode& root)
{
    int levels = 0;
    for (const test::JsonNode* node = &root; node != nullptr; ++levels) {
        if (const auto* const array = boost::any_cast<test::JsonArray>(node->get()))
            node = array->empty() ? nullptr : &array->front();
        else if (const auto* const object = boost::any_cast<test::JsonObject>(node->get()))
            node = object->empty() ? nullptr : &object->begin()->second;
        else
            return levels;
    }
    return levels;
}

TEST(JsonDepth, AllLevelsUpToTheDeepestAreRead)
{
    test::onSmallStack(smallStack, [] {
        EXPECT_EQ(levelsOf(json::read(nestedArrays(512))), 512);
        EXPECT_EQ(levelsOf(json::read(nestedObjects(512))), 512);
        EXPECT_EQ(levelsOf(json::read(repeated("[{\"a\":", 256) + "1" + repeated("}]", 256))), 512);
    });
}

TEST(JsonDepth, OneLevelMoreIsRefused)
{
    test::onSmallStack(smallStack, [] {
        EXPECT_TRUE(json::read(nestedArrays(513))->empty());
        EXPECT_TRUE(json::read(nestedObjects(513))->empty());
        EXPECT_TRUE(json::read(repeated("[{\"a\":", 256) + "[]" + repeated("}]", 256))->empty());
    });
}

TEST(JsonDepth, CountsOpenBracketsOnly)
{
    const std::string deep = nestedArrays(511);
    EXPECT_EQ(levelsOf(json::read("[" + deep + "," + deep + "," + deep + "]")), 512);
    EXPECT_FALSE(json::read("[" + repeated("[],", 2000) + "{}]")->empty());
}

TEST(JsonDepth, BracketsInStringsDoNotCount)
{
    const std::string brackets = repeated("[", 2000) + repeated("{", 2000);
    EXPECT_EQ(test::describe(json::read("[\"\\\"" + brackets + "\"]")), "['\"" + brackets + "']");
}

TEST(JsonDepth, AMegabyteOfBracketsIsRefused)
{
    test::onSmallStack(smallStack, [] {
        EXPECT_TRUE(json::read(repeated("[", 1 << 20))->empty());
        EXPECT_TRUE(json::read(repeated("{\"a\":", 1 << 18))->empty());
        EXPECT_TRUE(json::read(repeated("[{\"a\":", 1 << 18))->empty());
        EXPECT_TRUE(json::read(nestedArrays(1 << 19))->empty());
        EXPECT_TRUE(json::read(repeated("]", 1 << 20))->empty());
    });
}

// A tree that was built before a fault is released level by level, too.
TEST(JsonDepth, WideAndDeepTreesAreReleased)
{
    test::onSmallStack(smallStack, [] {
        std::string text = "[";
        for (int i = 0; i < 50; ++i)
            text += nestedArrays(511) + "," + nestedObjects(511) + ",";
        EXPECT_TRUE(json::read(text + "x]")->empty());
        EXPECT_FALSE(json::read(text + "0]")->empty());
    });
}

}  // namespace
