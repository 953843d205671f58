#include "host/catalog/CsvText.h"

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

/// The records with every cell in quotes.
std::string written(const std::vector<VelkHost::CsvRow>& rows)
{
    std::string text;
    for (const VelkHost::CsvRow& row : rows) {
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            text += i == 0 ? "\"" : ",\"";
            for (const char c : row.cells[i])
                text += c == '"' ? std::string("\"\"") : std::string(1, c);
            text += '"';
        }
        text += '\n';
    }
    return text;
}

/// The cells of a text without quotes, found in a slower way: first the lines that are not empty, then their cells.
std::vector<std::vector<std::string>> plainCells(std::string_view text, char delimiter)
{
    std::vector<std::vector<std::string>> rows;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.empty())
            continue;
        std::vector<std::string>& cells = rows.emplace_back();
        for (;;) {
            const std::size_t end = line.find(delimiter);
            cells.emplace_back(line.substr(0, end));
            if (end == std::string_view::npos)
                break;
            line.remove_prefix(end + 1);
        }
    }
    return rows;
}

void checkPlainCells(std::string_view text, const std::vector<VelkHost::CsvRow>& rows)
{
    if (text.find('"') != std::string_view::npos)
        return;
    const std::vector<std::vector<std::string>> cells = plainCells(text, VelkHost::csvDelimiter(text));
    fuzz::check(cells.size() == rows.size(), "each line that is not empty is a record");
    for (std::size_t i = 0; i < cells.size(); ++i)
        fuzz::check(cells[i] == rows[i].cells, "cells are what stands between delimiters");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const std::vector<VelkHost::CsvRow> rows = VelkHost::parseCsv(text, VelkHost::csvDelimiter(text));
        checkPlainCells(text, rows);
        const std::vector<VelkHost::CsvRow> again = VelkHost::parseCsv(written(rows), ',');
        fuzz::check(again.size() == rows.size(), "as many records come back");
        for (std::size_t i = 0; i < rows.size(); ++i)
            fuzz::check(again[i].cells == rows[i].cells, "cells come back");
    } catch (const VelkHost::CsvError&) {
        // Refused, with the line.
    }
    return 0;
}
