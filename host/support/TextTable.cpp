#include "host/support/TextTable.h"

#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::size_t narrowestColumn = 8;  // characters
constexpr std::string_view columnGap = "  ";

}  // namespace

TextTable::TextTable(std::vector<Column> columns) : columns_(std::move(columns))
{
    Row titles;
    for (const Column& column : columns_)
        titles.push_back(plain(column.title));
    rows_.push_back(std::move(titles));
}

void TextTable::add(Row row)
{
    rows_.push_back(std::move(row));
}

void TextTable::add(const std::vector<std::string>& cells)
{
    Row row;
    for (const std::string& cell : cells)
        row.push_back(plain(cell));
    add(std::move(row));
}

std::string TextTable::text(std::size_t columns, bool styles) const
{
    std::string lines;
    const Widths widths = columnWidths(columns);
    for (const Row& row : rows_)
        if (rows_.size() > 1)
            lines += line(row, widths, styles);
    return lines;
}

/// The table's width when no flexible column is wider than `cap`.
std::size_t TextTable::totalWidth(const Widths& widths, std::size_t cap) const
{
    std::size_t total = columnGap.size() * (widths.size() - 1);
    for (std::size_t i = 0; i < widths.size(); ++i)
        total += columns_[i].flexible ? std::min(widths[i], cap) : widths[i];
    return total;
}

/// The columns' widths: what they need, or less in the flexible ones when the terminal is narrow. The
/// widest gives way first, so that short columns stay whole.
TextTable::Widths TextTable::columnWidths(std::size_t columns) const
{
    Widths widths(columns_.size());
    for (const Row& row : rows_)
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], displayWidth(row[i].text));
    if (columns == 0)
        return widths;
    std::size_t cap = *std::max_element(widths.begin(), widths.end());
    while (cap > narrowestColumn && totalWidth(widths, cap) > columns)
        --cap;
    for (std::size_t i = 0; i < widths.size(); ++i)
        if (columns_[i].flexible)
            widths[i] = std::min(widths[i], cap);
    return widths;
}

std::string TextTable::line(const Row& row, const Widths& widths, bool styles) const
{
    std::string line;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const StyledText cell = cutToWidth(row[i], widths[i]);
        const std::string padding(widths[i] - displayWidth(cell.text), ' ');
        const bool rightAligned = columns_[i].rightAligned;
        line += (i == 0 ? "" : std::string(columnGap)) + (rightAligned ? padding : "") + render(cell, styles) +
                (rightAligned ? "" : padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

StyledText plain(std::string_view text)
{
    return highlighted(text, {});
}

std::string counted(std::size_t count, const std::string& singular, const std::string& plural)
{
    return formatWithThousandsSeparatorPrecision(static_cast<double>(count), 0) + " " +
           (count == 1       ? singular
            : plural.empty() ? singular + "s"
                             : plural);
}

std::size_t shownOf(std::size_t count, std::size_t limit)
{
    return limit == 0 ? count : std::min(limit, count);
}

std::string moreLine(std::size_t count, std::size_t limit)
{
    const std::size_t hidden = count - shownOf(count, limit);
    if (hidden == 0)
        return {};
    return "... and " + formatWithThousandsSeparatorPrecision(static_cast<double>(hidden), 0) +
           " more (--limit 0 shows all)\n";
}

}  // namespace VelkHost
