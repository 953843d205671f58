#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// One record of comma-separated values.
struct CsvRow
{
    std::size_t line = 0;  ///< of the file, where the record begins; the first line is 1
    std::vector<std::string> cells;
};

/// What is wrong with comma-separated values, and where.
class CsvError : public std::runtime_error
{
public:
    CsvError(std::size_t line, const std::string& reason)
        : std::runtime_error("line " + std::to_string(line) + ": " + reason)
    {}
};

/// The delimiter in use: the one of ",", ";" and tab that occurs most often outside quotes in the first
/// line; "," when none occurs.
char csvDelimiter(std::string_view text);

/// Reads comma-separated values as RFC 4180 defines them: cells may stand in quotes, where a doubled quote
/// is one quote and line breaks are text; lines end in LF, CR or CR LF; empty lines are skipped. Blanks
/// around a quoted cell are ignored.
/// Throws CsvError for a quote that is not closed, text after a closing quote, a cell of more than
/// 1 MiB and a record of more than 1,000 cells. Any thread.
std::vector<CsvRow> parseCsv(std::string_view text, char delimiter);

}  // namespace VelkHost
