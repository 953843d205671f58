#include "host/installation/HitOrder.h"

#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace VelkHost;

namespace {

LoadedLibrary libraryOf(const std::string& name, const std::vector<std::string>& items)
{
    Catalog catalog;
    catalog.name = name;
    for (const std::string& item : items)
        catalog.items.push_back({item, 0, item, "", "", {}});
    return {fileString(name), std::make_shared<const Catalog>(std::move(catalog))};
}

std::vector<Hit> allItems(const LibrarySet& libraries, SearchPriority priority)
{
    std::vector<Hit> hits;
    for (std::size_t library = 0; library < libraries.loaded.size(); ++library)
        for (std::size_t i = 0; i < libraries.loaded[library].catalog->items.size(); ++i)
            hits.push_back({priority, false, library, i});
    return hits;
}

std::string orderOf(const LibrarySet& libraries, const std::vector<Hit>& hits)
{
    std::string text;
    for (const Hit& hit : inOrder(libraries, hits))
        text += std::to_string(hit.library) + hitName(libraries, hit) + "|";
    return text;
}

// The order as inOrder() is documented, one clause after the other.
std::vector<Hit> plainlySorted(const LibrarySet& libraries, std::vector<Hit> hits)
{
    const auto key = [&](const Hit& hit) {
        return std::tuple(hit.priority, StringUtils::toLowerUtf8(hitName(libraries, hit)),
                          libraries.loaded[hit.library].catalog->name);
    };
    std::stable_sort(hits.begin(), hits.end(), [&](const Hit& a, const Hit& b) { return key(a) < key(b); });
    return hits;
}

// Few letters and common beginnings, so that many names are equal or share a long beginning.
std::string randomName(std::mt19937& random)
{
    static const std::vector<std::string> beginnings{"", "chair ", "Chair number ", "Chair number 000000",
                                                     "STUHL \u00C4"};
    static const std::vector<std::string> letters{"a",      "A",      "b",    std::string(1, '\0'),
                                                  "\u00FC", "\u00DC", "\xFF", "\u6905"};
    std::string name = beginnings[random() % beginnings.size()];
    for (unsigned length = random() % 4; length > 0; --length)
        name += letters[random() % letters.size()];
    return name;
}

}  // namespace

TEST(HitOrder, OfNoHitsIsNone)
{
    EXPECT_TRUE(inOrder({}, {}).empty());
}

TEST(HitOrder, ReadsNamesToTheirEnd)
{
    LibrarySet set;
    set.loaded.push_back(
        libraryOf("A", {"Cupboard with doors 2", "Cupboard with doors 10", "Cupboard with door", "Cup"}));
    EXPECT_EQ(orderOf(set, allItems(set, ItemContainsWord)),
              "0Cup|0Cupboard with door|0Cupboard with doors 10|0Cupboard with doors 2|");
}

TEST(HitOrder, OfOneNameGoesByTheLibrarysName)
{
    LibrarySet set;
    set.loaded = {libraryOf("b", {"Chair"}), libraryOf("a", {"CHAIR"}), libraryOf("b", {"chair"})};
    EXPECT_EQ(orderOf(set, allItems(set, ItemExactName)), "1CHAIR|0Chair|2chair|");
}

TEST(HitOrder, AgreesWithThePlainOrder)
{
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        LibrarySet set;
        for (const char* const library : {"m", "k", "m"}) {
            std::vector<std::string> names;
            for (int i = 0; i < 30; ++i)
                names.push_back(randomName(random));
            set.loaded.push_back(libraryOf(library, names));
        }
        std::vector<Hit> hits = allItems(set, Invalid);
        for (Hit& hit : hits)
            hit.priority = static_cast<SearchPriority>(1 + random() % 14);
        std::shuffle(hits.begin(), hits.end(), random);
        const std::vector<Hit> ordered = inOrder(set, hits);
        const std::vector<Hit> expected = plainlySorted(set, hits);
        ASSERT_EQ(ordered.size(), expected.size());
        for (std::size_t i = 0; i < ordered.size(); ++i)
            ASSERT_EQ(std::tie(ordered[i].priority, ordered[i].library, ordered[i].index),
                      std::tie(expected[i].priority, expected[i].library, expected[i].index))
                << "round " << round << ", place " << i;
    }
}
