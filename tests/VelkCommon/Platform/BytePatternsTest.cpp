#include <VelkCommon/Platform/BytePatterns.h>

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Velk::Platform::BytePatterns;

using Place = std::pair<std::size_t, unsigned>;  // where patterns begin, and a bit for each of them

using Finder = std::size_t (BytePatterns::*)(const char*, std::size_t, BytePatterns::Block*) const noexcept;

std::vector<Place> placesIn(const BytePatterns& patterns, std::string text, Finder find = &BytePatterns::find)
{
    const std::size_t blockCount = (text.size() + BytePatterns::blockSize - 1) / BytePatterns::blockSize;
    text.resize(blockCount * BytePatterns::blockSize + BytePatterns::readBehind);
    std::vector<BytePatterns::Block> blocks(blockCount + 1);
    blocks.resize((patterns.*find)(text.data(), blockCount, blocks.data()));
    std::vector<Place> places;
    for (const BytePatterns::Block& block : blocks) {
        for (std::size_t i = 0; i < BytePatterns::blockSize; ++i) {
            EXPECT_EQ(block.places >> i & 1, block.beginning[i] != 0 ? 1U : 0U);
            if (block.beginning[i] != 0)
                places.emplace_back(block.number * BytePatterns::blockSize + i, block.beginning[i]);
        }
    }
    return places;
}

TEST(BytePatterns, AreFoundWhereTheyBegin)
{
    BytePatterns patterns;
    patterns.add("cha");
    patterns.add("air");
    EXPECT_THAT(placesIn(patterns, "a chair and an armchair"),
                ElementsAre(Pair(2, 1U), Pair(4, 2U), Pair(18, 1U), Pair(20, 2U)));
    EXPECT_THAT(placesIn(patterns, "a lamp"), IsEmpty());
}

TEST(BytePatterns, AreFoundAcrossTwoBlocks)
{
    BytePatterns patterns;
    patterns.add("cha");
    EXPECT_THAT(placesIn(patterns, std::string(14, '.') + "chair"), ElementsAre(Pair(14, 1U)));
    EXPECT_THAT(placesIn(patterns, std::string(15, '.') + "chair"), ElementsAre(Pair(15, 1U)));
    EXPECT_THAT(placesIn(patterns, std::string(16, '.') + "chair"), ElementsAre(Pair(16, 1U)));
}

TEST(BytePatterns, MayBeShorterOrLonger)
{
    BytePatterns patterns;
    patterns.add("z");
    patterns.add("of");
    patterns.add("office");  // only its first three bytes count
    EXPECT_THAT(placesIn(patterns, "jazz of offenbach"),
                ElementsAre(Pair(2, 1U), Pair(3, 1U), Pair(5, 2U), Pair(8, 6U)));
}

TEST(BytePatterns, AreForgotten)
{
    BytePatterns patterns;
    patterns.add("cha");
    patterns.clear();
    EXPECT_EQ(patterns.size(), 0U);
    patterns.add("air");
    EXPECT_THAT(placesIn(patterns, "chair"), ElementsAre(Pair(2, 1U)));
}

TEST(BytePatterns, AreFoundAlikeByEveryProcessor)
{
    std::mt19937 random(5);
    const auto randomText = [&](std::size_t size, unsigned kinds) {
        std::string text;
        while (text.size() < size)
            text += static_cast<char>(0x7C + random() % kinds);  // on both sides of the end of ASCII
        return text;
    };
    std::size_t found = 0;
    for (int round = 0; round < 200; ++round) {
        const unsigned kinds = 2 + static_cast<unsigned>(random() % 30);
        BytePatterns patterns;
        for (std::size_t count = 1 + random() % BytePatterns::most; count > 0; --count)
            patterns.add(randomText(1 + random() % 4, kinds));
        const std::string text = randomText(random() % 500, kinds);
        const std::vector<Place> places = placesIn(patterns, text);
        EXPECT_EQ(places, placesIn(patterns, text, &BytePatterns::findByteByByte));
        found += places.size();
    }
    EXPECT_GT(found, 1000U);
}

}  // namespace
