#include "host/installation/EntrySort.h"

#include "host/support/Parallel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace VelkHost {
namespace {

/// Below this number, threads take longer to begin than to sort.
constexpr std::size_t worthAThread = 10'000;

struct SortKey
{
    std::uint64_t beginning;
    EntryNumber entry;
};

/// Looks at whole names only where their first bytes are equal.
class KeyOrder
{
public:
    explicit KeyOrder(const IndexState& state) : state_(state) {}

    bool operator()(const SortKey& left, const SortKey& right) const
    {
        return left.beginning != right.beginning ? left.beginning < right.beginning
                                                 : state_.isBefore(left.entry, right.entry);
    }

private:
    const IndexState& state_;
};

using Keys = std::vector<SortKey>;

/// Sorts by eight bytes of the names at a time, since comparing numbers is much quicker than looking for the names in
/// memory.
class NameSort
{
public:
    explicit NameSort(const IndexState& state) : state_(state) {}

    /// The keys' beginnings are those of the names from `depth` on, before which all names are equal.
    void sort(std::span<SortKey> keys, std::size_t depth = 0) const
    {
        std::sort(keys.begin(), keys.end(),
                  [](const SortKey& left, const SortKey& right) { return left.beginning < right.beginning; });
        for (auto begin = keys.begin(); begin != keys.end();) {
            const auto end =
                std::find_if(begin, keys.end(), [&](const SortKey& key) { return key.beginning != begin->beginning; });
            if (end - begin > 1)
                sortEqual({begin, end}, depth);
            begin = end;
        }
    }

private:
    static constexpr std::size_t step = sizeof(SortKey::beginning);
    static constexpr std::size_t deepest = 64;
    static constexpr std::ptrdiff_t few = 8;

    /// Keys with equal beginnings. Names that end in them stand before those that go on.
    void sortEqual(std::span<SortKey> keys, std::size_t depth) const
    {
        const std::uint64_t beginning = keys.front().beginning;
        const auto longer = std::partition(keys.begin(), keys.end(), [&](const SortKey& key) {
            return state_.lowerName(key.entry).size() <= depth + step;
        });
        const auto isBefore = [this](const SortKey& left, const SortKey& right) {
            return state_.isBefore(left.entry, right.entry);
        };
        std::sort(keys.begin(), longer, isBefore);
        if (keys.end() - longer <= few || depth >= deepest) {
            std::sort(longer, keys.end(), isBefore);
            return;
        }
        const std::span<SortKey> rest(longer, keys.end());
        for (SortKey& key : rest)
            key.beginning = state_.beginningOf(key.entry, depth + step);
        sort(rest, depth + step);
        for (SortKey& key : rest)
            key.beginning = beginning;
    }

    const IndexState& state_;
};

/// The keys below the middle one of a sample, and the others.
std::array<std::span<SortKey>, 2> halves(std::span<SortKey> keys)
{
    constexpr std::size_t sampleSize = 255;
    if (keys.size() < worthAThread)
        return {keys, {}};
    std::array<std::uint64_t, sampleSize> sample{};
    for (std::size_t i = 0; i < sampleSize; ++i)
        sample[i] = keys[keys.size() * i / sampleSize].beginning;
    std::nth_element(sample.begin(), sample.begin() + sampleSize / 2, sample.end());
    const auto middle = std::partition(keys.begin(), keys.end(),
                                       [&](const SortKey& key) { return key.beginning < sample[sampleSize / 2]; });
    return {std::span(keys.begin(), middle), std::span(middle, keys.end())};
}

/// The threads split the keys until there are enough ranges for all of them, and then sort each range.
void sortKeys(Keys& keys, const IndexState& state)
{
    std::vector<std::span<SortKey>> ranges{keys};
    while (ranges.size() < 4 * threadCount() && keys.size() >= worthAThread * ranges.size()) {
        std::vector<std::span<SortKey>> split(2 * ranges.size());
        forEachInParallel(ranges.size(), [&](std::size_t i) {
            const auto both = halves(ranges[i]);
            std::copy(both.begin(), both.end(), split.begin() + static_cast<std::ptrdiff_t>(2 * i));
        });
        ranges.swap(split);
    }
    const NameSort sort(state);
    forEachInParallel(ranges.size(), [&](std::size_t i) { sort.sort(ranges[i]); });
}

SortKey keyAt(const EntryOrder& order, std::size_t place)
{
    return {order.beginnings[place], order.entries[place]};
}

/// The first place from `begin` on whose entry stands behind `key`. Quick where that is near.
std::size_t placeBehind(const EntryOrder& order, std::size_t begin, const SortKey& key, const KeyOrder& isBefore)
{
    std::size_t step = 1;
    std::size_t low = begin;
    const std::size_t size = order.entries.size();
    while (low + step <= size && isBefore(keyAt(order, low + step - 1), key)) {
        low += step;
        step *= 2;
    }
    std::size_t high = std::min(low + step - 1, size);
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (isBefore(keyAt(order, middle), key))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void append(EntryOrder& order, const EntryOrder& from, std::size_t begin, std::size_t end)
{
    const auto add = [&](auto& values, const auto& source) {
        values.insert(values.end(), source.begin() + static_cast<std::ptrdiff_t>(begin),
                      source.begin() + static_cast<std::ptrdiff_t>(end));
    };
    add(order.entries, from.entries);
    add(order.beginnings, from.beginnings);
}

}  // namespace

EntryOrder sortedEntries(const IndexState& state, const std::vector<EntryNumber>& entries)
{
    Keys keys(entries.size());
    const std::size_t pieces = entries.size() / worthAThread + 1;
    forEachInParallel(pieces, [&](std::size_t piece) {
        const std::size_t end = entries.size() * (piece + 1) / pieces;
        for (std::size_t i = entries.size() * piece / pieces; i < end; ++i)
            keys[i] = {state.beginningOf(entries[i], 0), entries[i]};
    });
    sortKeys(keys, state);
    EntryOrder order;
    order.entries.reserve(keys.size());
    order.beginnings.reserve(keys.size());
    for (const SortKey& key : keys) {
        order.entries.push_back(key.entry);
        order.beginnings.push_back(key.beginning);
    }
    return order;
}

EntryOrder mergedOrders(const IndexState& state, const EntryOrder& one, const EntryOrder& other)
{
    const EntryOrder& larger = one.entries.size() >= other.entries.size() ? one : other;
    const EntryOrder& smaller = &larger == &one ? other : one;
    const KeyOrder isBefore(state);
    EntryOrder merged;
    merged.entries.reserve(one.entries.size() + other.entries.size());
    merged.beginnings.reserve(one.entries.size() + other.entries.size());
    std::size_t done = 0;
    for (std::size_t i = 0; i < smaller.entries.size(); ++i) {
        const std::size_t place = placeBehind(larger, done, keyAt(smaller, i), isBefore);
        append(merged, larger, done, place);
        append(merged, smaller, i, i + 1);
        done = place;
    }
    append(merged, larger, done, larger.entries.size());
    return merged;
}

}  // namespace VelkHost
