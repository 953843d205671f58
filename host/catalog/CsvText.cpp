#include "host/catalog/CsvText.h"

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::size_t maximumCellBytes = std::size_t{1} << 20;
constexpr std::size_t maximumCells = 1'000;  // in one record

class CsvParser
{
public:
    CsvParser(std::string_view text, char delimiter) : text_(text), delimiter_(delimiter) {}

    std::vector<CsvRow> rows()
    {
        std::vector<CsvRow> rows;
        while (position_ < text_.size()) {
            if (takeLineEnd())
                continue;
            rows.push_back(takeRow());
        }
        return rows;
    }

private:
    CsvRow takeRow()
    {
        CsvRow row{line_, {}};
        do {
            if (row.cells.size() == maximumCells)
                throw CsvError(row.line, "more than 1,000 cells");
            row.cells.push_back(takeCell());
        } while (take(delimiter_));
        if (position_ < text_.size() && !takeLineEnd())
            throw CsvError(line_, "text after a closing quote; a quote in a quoted cell is written twice");
        return row;
    }

    std::string takeCell()
    {
        const std::size_t start = text_.find_first_not_of(' ', position_);
        if (start != std::string_view::npos && text_[start] == '"') {
            position_ = start;
            return takeQuotedCell();
        }
        const char stops[] = {delimiter_, '\r', '\n'};
        const std::size_t end = std::min(text_.find_first_of({stops, 3}, position_), text_.size());
        const std::size_t begin = std::exchange(position_, end);
        return checked(std::string(text_.substr(begin, end - begin)));
    }

    std::string takeQuotedCell()
    {
        const std::size_t firstLine = line_;
        std::string cell;
        for (++position_; position_ < text_.size(); ++position_) {
            if (take('"') && (position_ == text_.size() || text_[position_] != '"')) {
                position_ = std::min(text_.find_first_not_of(' ', position_), text_.size());
                return checked(std::move(cell));
            }
            countLine();
            cell += text_[position_];
        }
        throw CsvError(firstLine, "a quote is opened and not closed");
    }

    std::string checked(std::string cell) const
    {
        if (cell.size() > maximumCellBytes)
            throw CsvError(line_, "a cell of more than 1 MiB");
        return cell;
    }

    /// A line ends with LF, and with a CR that has no LF behind it.
    void countLine()
    {
        const char c = text_[position_];
        const bool carriageReturnAlone = c == '\r' && (position_ + 1 == text_.size() || text_[position_ + 1] != '\n');
        if (c == '\n' || carriageReturnAlone)
            ++line_;
    }

    bool takeLineEnd()
    {
        const std::size_t start = position_;
        take('\r');
        take('\n');
        line_ += position_ == start ? 0 : 1;
        return position_ != start;
    }

    bool take(char c)
    {
        const bool here = position_ < text_.size() && text_[position_] == c;
        position_ += here ? 1 : 0;
        return here;
    }

    std::string_view text_;
    char delimiter_;
    std::size_t position_ = 0;
    std::size_t line_ = 1;
};

}  // namespace

char csvDelimiter(std::string_view text)
{
    std::size_t commas = 0;
    std::size_t semicolons = 0;
    std::size_t tabs = 0;
    bool quoted = false;
    for (const char c : text.substr(0, text.find_first_of("\r\n"))) {
        quoted = quoted != (c == '"');
        commas += !quoted && c == ',';
        semicolons += !quoted && c == ';';
        tabs += !quoted && c == '\t';
    }
    if (semicolons > commas && semicolons >= tabs)
        return ';';
    return tabs > commas ? '\t' : ',';
}

std::vector<CsvRow> parseCsv(std::string_view text, char delimiter)
{
    return CsvParser(text, delimiter).rows();
}

}  // namespace VelkHost
