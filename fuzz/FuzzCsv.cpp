#include "host/catalog/CsvText.h"

#include "Check.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const std::vector<VelkHost::CsvRow> rows = VelkHost::parseCsv(text, VelkHost::csvDelimiter(text));
        const std::vector<VelkHost::CsvRow> again = VelkHost::parseCsv(written(rows), ',');
        fuzz::check(again.size() == rows.size(), "as many records come back");
        for (std::size_t i = 0; i < rows.size(); ++i)
            fuzz::check(again[i].cells == rows[i].cells, "cells come back");
    } catch (const VelkHost::CsvError&) {
        // Refused, with the line.
    }
    return 0;
}
