#pragma once

#include "host/support/DisplayText.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// Rows of cells in aligned columns. The first row holds the titles.
class TextTable
{
public:
    struct Column
    {
        std::string title;
        bool rightAligned = false;
        bool flexible = false;  ///< gives way on a narrow terminal, the widest first
    };
    using Row = std::vector<StyledText>;

    explicit TextTable(std::vector<Column> columns);

    /// Adds a row with a cell per column.
    void add(Row row);
    /// Adds a row of UTF-8 texts with nothing marked.
    void add(const std::vector<std::string>& cells);

    /// The lines, fitted into `columns` characters (0 for no limit), as UTF-8 that is safe for terminals. Empty when
    /// no row was added.
    std::string text(std::size_t columns, bool styles) const;

private:
    using Widths = std::vector<std::size_t>;

    std::size_t totalWidth(const Widths& widths, std::size_t cap) const;
    Widths columnWidths(std::size_t columns) const;
    std::string line(const Row& row, const Widths& widths, bool styles) const;

    std::vector<Column> columns_;
    std::vector<Row> rows_;
};

/// Printable text with nothing marked.
StyledText plain(std::string_view text);

/// "1 hit", "1,234 hits"; without a plural it is the singular and "s".
std::string counted(std::size_t count, const std::string& singular, const std::string& plural = {});

/// How many of `count` lines to show when at most `limit` are asked for; 0 for all.
std::size_t shownOf(std::size_t count, std::size_t limit);

/// The line below a table that was cut at `limit` lines; empty when nothing was cut.
std::string moreLine(std::size_t count, std::size_t limit);

}  // namespace VelkHost
