#include "PaintedKeys.h"

#include "PaintWaiter.h"
#include "TimedApplication.h"
#include "TypedSearches.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/search/SearchPane.h"

#include <QLineEdit>
#include <QTreeView>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace bench {
namespace {

constexpr int rounds = 3;        // the least counts: the machine may have other things to do
constexpr double painting = 20;  // ms for what comes after the results are ready

std::vector<TypedSearch> searchesInTheBox()
{
    std::vector<TypedSearch> searches = typedSearches();
    std::erase_if(searches, [](const TypedSearch& search) { return search.legacy; });
    return searches;
}

}  // namespace

double paintedKey(VelkHost::BrowserWindow& window, const QString& text)
{
    VelkHost::SearchPane& search = *window.searchPane();
    PaintWaiter results(search.view()->viewport());
    const auto begin = Clock::now();
    window.findChild<QLineEdit*>(QStringLiteral("searchBox"))->setText(text);
    results.wait([&] { return search.model().outcome() != nullptr && search.model().outcome()->text == text; });
    return millisecondsSince(begin);
}

PaintedKeys paintedKeys(VelkHost::BrowserWindow& window)
{
    const std::vector<TypedSearch> searches = searchesInTheBox();
    PaintedKeys keys;
    keys.count = searches.size();
    if (keys.count > keys.times.size())
        std::abort();
    keys.times.fill(std::numeric_limits<double>::max());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < keys.count; ++i) {
            window.findChild<QLineEdit*>(QStringLiteral("searchBox"))->clear();
            keys.times.at(i) = std::min(keys.times.at(i), paintedKey(window, QString::fromStdString(searches[i].text)));
        }
    return keys;
}

void addPaintedKeys(const PaintedKeys& keys, std::vector<Measure>& measures)
{
    const std::vector<TypedSearch> searches = searchesInTheBox();
    std::vector<double> shares;
    std::printf("\n%-32s %12s %6s\n", "key", "painted ms", "gate");
    for (std::size_t i = 0; i < keys.count; ++i) {
        const double gate = searches[i].gate + painting;
        std::printf("%-32.32s %12.1f %6.0f%s\n", searches[i].text.c_str(), keys.times.at(i), gate,
                    keys.times.at(i) > gate ? " MISSED" : "");
        shares.push_back(keys.times.at(i) / gate);
    }
    std::vector<double> times(keys.times.begin(), keys.times.begin() + static_cast<std::ptrdiff_t>(keys.count));
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
    measures.push_back(
        {"any key painted: part of its gate", *std::max_element(shares.begin(), shares.end()), 1, 0.5, false, "x"});
    measures.push_back({"median key painted", times[times.size() / 2], 20, 10, false, "ms"});
}

}  // namespace bench
