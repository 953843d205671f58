#include "ReadingMeasures.h"

#include "host/catalog/CatalogFile.h"

#include <QTemporaryDir>

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 5;
constexpr double target = 400;  // ms for a million items

/// Without the time in which a result is freed.
template <typename Work>
double leastMilliseconds(Work work)
{
    double least = 1e9;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = Clock::now();
        [[maybe_unused]] const auto result = work();
        least = std::min(least, std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    return least;
}

/// The bytes of all texts.
std::size_t goThrough(const fileString& file)
{
    sqlite3* database = nullptr;
    sqlite3_stmt* rows = nullptr;
    if (sqlite3_open_v2(file.utf8().c_str(), &database, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(database, "SELECT id, unique_id, folder, name, keywords FROM item ORDER BY id", -1, &rows,
                           nullptr) != SQLITE_OK)
        std::abort();
    std::size_t bytes = 0;
    while (sqlite3_step(rows) == SQLITE_ROW)
        for (const int column : {1, 3, 4})
            bytes += static_cast<std::size_t>(sqlite3_column_bytes(rows, column));
    sqlite3_finalize(rows);
    sqlite3_close(database);
    return bytes;
}

}  // namespace

bool printReading(const VelkHost::Catalog& catalog)
{
    const QTemporaryDir folder;
    const fileString file = fileString(folder.path().toStdString()) / U"Benchmark.calib";
    writeCatalog(catalog, file);
    const bool isSame = readCatalog(file, VelkHost::CatalogContent::Names).items == catalog.items;
    const double outline = leastMilliseconds([&] { return readCatalog(file, VelkHost::CatalogContent::Outline); });
    const double names = leastMilliseconds([&] { return readCatalog(file, VelkHost::CatalogContent::Names); });
    const double bound = leastMilliseconds([&] { return goThrough(file); });
    std::printf(
        "%zu items read from their file: %.0f ms (target %.0f), of these %.1f ms to its outline; SQLite alone, "
        "which keeps nothing: %.0f ms%s\n",
        catalog.items.size(), names, target, outline, bound, isSame ? "" : " OTHER ITEMS");
    return isSame;
}

}  // namespace bench
