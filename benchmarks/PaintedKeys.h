#pragma once

#include "Measures.h"

#include <QString>

#include <array>
#include <cstddef>
#include <vector>

namespace VelkHost {
class BrowserWindow;
}

namespace bench {

/// The ms from each of the typed searches to its painted results; in the order of typedSearches(), without those that
/// cannot be typed. Of a fixed size, so that a process can leave it in memory that it shares.
struct PaintedKeys
{
    std::array<double, 128> times = {};
    std::size_t count = 0;
};

/// The ms until the window shows the results of a text that is put into its search box.
double paintedKey(VelkHost::BrowserWindow& window, const QString& text);

/// That of all texts, each beginning with an empty search box; the least of three rounds.
PaintedKeys paintedKeys(VelkHost::BrowserWindow& window);

/// Prints each of them with its gate, and appends what is demanded of all of them and of the median.
void addPaintedKeys(const PaintedKeys& keys, std::vector<Measure>& measures);

}  // namespace bench
