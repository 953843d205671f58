#include "host/installation/EntrySort.h"

#include "host/support/Parallel.h"

#include <algorithm>
#include <cstddef>
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

/// Each thread sorts a run; then pairs of runs are merged until one is left.
void sortKeys(Keys& keys, const KeyOrder& order)
{
    std::size_t runs = 1;
    while (runs * 2 <= threadCount() && keys.size() / (runs * 2) >= worthAThread)
        runs *= 2;
    const auto border = [&](std::size_t run, std::size_t count) {
        return keys.begin() + static_cast<std::ptrdiff_t>(keys.size() * run / count);
    };
    forEachInParallel(runs, [&](std::size_t run) { std::sort(border(run, runs), border(run + 1, runs), order); });
    for (; runs > 1; runs /= 2)
        forEachInParallel(runs / 2, [&](std::size_t pair) {
            std::inplace_merge(border(2 * pair, runs), border(2 * pair + 1, runs), border(2 * pair + 2, runs), order);
        });
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
            keys[i] = {state.beginningOf(entries[i]), entries[i]};
    });
    sortKeys(keys, KeyOrder(state));
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
