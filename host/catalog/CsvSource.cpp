#include "host/catalog/CsvSource.h"

#include "host/catalog/CatalogBuilder.h"
#include "host/catalog/CleanText.h"
#include "host/catalog/CsvText.h"
#include "host/catalog/ItemSizes.h"
#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>

namespace VelkHost {
namespace {

constexpr std::size_t maximumCsvBytes = std::size_t{256} << 20;
constexpr std::string_view detailColumn = "property ";
constexpr std::array<std::string_view, 4> translatable{"name", "category", "folder", "keywords"};

/// The file's text as UTF-8 without a byte order mark.
std::string readText(const fileString& path)
{
    std::string text = readWhole(path, maximumCsvBytes);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.erase(0, 3);
    return StringConvert::isUtf8(text) ? text : StringConvert::toStdUtf8String(StringConvert::fromWin1252(text));
}

std::vector<CsvRow> readRows(const fileString& path)
{
    const std::string text = readText(path);
    try {
        return parseCsv(text, csvDelimiter(text));
    } catch (const CsvError& error) {
        throw FileError(path, error.what());
    }
}

class CsvSource
{
public:
    CsvSource(const fileString& path, const BuildOptions& options)
        : path_(path), options_(options), rows_(readRows(path))
    {
        if (rows_.empty())
            throw FileError(path, "is empty; the first line names the columns, for example: name,category,keywords");
        readColumns();
        chain_ = languageChain(options_.language, languages(), path_);
    }

    Catalog catalog() const
    {
        const Catalog head = header();
        CatalogBuilder builder(path_, head);
        for (auto row = rows_.begin() + 1; row != rows_.end(); ++row)
            addItem(builder, head.id, *row);
        return builder.finish();
    }

private:
    [[noreturn]] void fail(const CsvRow& row, const std::string& reason) const
    {
        throw FileError(path_, "line " + std::to_string(row.line) + ": " + reason);
    }

    void readColumns()
    {
        for (std::size_t i = 0; i < rows_.front().cells.size(); ++i) {
            const std::string name =
                StringUtils::toLowerUtf8(cleanText(rows_.front().cells[i], limits::nameCharacters));
            if (!name.empty() && !columns_.emplace(name, i).second)
                fail(rows_.front(), "the column \"" + name + "\" occurs twice");
        }
        if (!columns_.contains("name"))
            fail(rows_.front(), "there is no column \"name\"; the first line names the columns");
    }

    /// Column names are in lower case, language codes are not: "name_pt_pt" is the language "pt_PT".
    std::set<std::string> languages() const
    {
        std::set<std::string> found;
        for (const auto& [column, index] : columns_)
            for (const std::string_view text : translatable)
                if (column.starts_with(std::string(text) + "_"))
                    found.insert(normalisedLanguage(std::string_view(column).substr(text.size() + 1)));
        return found;
    }

    const std::string* cell(const CsvRow& row, const std::string& column) const
    {
        const auto found = columns_.find(column);
        if (found == columns_.end() || found->second >= row.cells.size() || row.cells[found->second].empty())
            return nullptr;
        return &row.cells[found->second];
    }

    /// The cell in the best language that has one.
    std::string text(const CsvRow& row, const std::string& column) const
    {
        for (const std::string& language : chain_)
            if (const std::string* found = cell(row, column + "_" + StringUtils::toLowerUtf8(language)))
                return *found;
        const std::string* found = cell(row, column);
        return found == nullptr ? std::string() : *found;
    }

    Catalog header() const
    {
        Catalog header;
        header.id = options_.id.empty() ? fileString(path_).stem().utf8() : options_.id;
        header.name = options_.name;
        header.kind = options_.kind;
        header.language = chain_.empty() ? std::string() : chain_.front();
        return header;
    }

    void addItem(CatalogBuilder& builder, const std::string& libraryId, const CsvRow& row) const
    {
        if (row.cells.size() > rows_.front().cells.size())
            fail(row, "has " + std::to_string(row.cells.size()) + " cells, more than there are columns (" +
                          std::to_string(rows_.front().cells.size()) +
                          "); put text that holds the separator in quotes");
        Item item;
        item.name = cleanText(text(row, "name"), limits::nameCharacters);
        if (item.name.empty())
            fail(row, "the name is missing");
        item.uniqueId = cleanText(text(row, "id"), limits::nameCharacters);
        if (item.uniqueId.empty())
            item.uniqueId = libraryId + "#" + std::to_string(row.line);
        if (builder.has(item.uniqueId))
            fail(row, "the id \"" + item.uniqueId + "\" occurs twice; ids must differ");
        item.folder = builder.folder(folderPath(row));
        item.keywords = joinKeywords({text(row, "keywords")});
        item.files = files(row);
        builder.add(std::move(item), size(row), properties(row));
    }

    float measure(const CsvRow& row, const std::string& column) const
    {
        const std::string* const text = cell(row, column);
        if (text == nullptr)
            return 0;
        const std::optional<float> millimetres = measureFromText(*text);
        if (!millimetres)
            fail(row, "the " + column + " \"" + *text + "\" is not a number of millimetres");
        return *millimetres;
    }

    ItemSize size(const CsvRow& row) const
    {
        return {measure(row, "width"), measure(row, "depth"), measure(row, "height")};
    }

    ItemProperties properties(const CsvRow& row) const
    {
        ItemProperties known;
        known.creator = text(row, "creator");
        known.licence = text(row, "licence");
        setPrice(row, known);
        for (const auto& [column, index] : columns_)
            if (const std::string* value = cell(row, column); value != nullptr && column.starts_with(detailColumn))
                known.details.push_back({column.substr(detailColumn.size()), *value});
        return known;
    }

    void setPrice(const CsvRow& row, ItemProperties& known) const
    {
        const std::string* const text = cell(row, "price");
        if (text == nullptr)
            return;
        const std::optional<std::string> price = priceFromText(*text);
        if (!price)
            fail(row, "the price \"" + *text + "\" is not a number such as 129.90");
        known.price = *price;
        known.currency = cleanText(this->text(row, "currency"), limits::nameCharacters);
        const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
        if (known.currency.empty())
            return;
        if (known.currency.size() != 3 || !std::all_of(known.currency.begin(), known.currency.end(), isLetter))
            fail(row, "the currency \"" + known.currency + "\" is not three capital letters, such as EUR");
    }

    std::vector<std::string> folderPath(const CsvRow& row) const
    {
        std::vector<std::string> path{text(row, "category")};
        for (std::string& name : StringUtils::tokenizeString(text(row, "folder"), '/'))
            path.push_back(std::move(name));
        return path;
    }

    std::vector<ItemFile> files(const CsvRow& row) const
    {
        std::vector<ItemFile> files;
        for (const std::string& piece : StringUtils::tokenizeString(text(row, "files"), ';'))
            if (std::string name = cleanText(piece, limits::nameCharacters); !name.empty())
                files.push_back({FileRole::Other, std::move(name)});
        return files;
    }

    fileString path_;
    BuildOptions options_;
    std::vector<CsvRow> rows_;
    std::map<std::string, std::size_t> columns_;  // by name in lower case
    std::vector<std::string> chain_;
};

}  // namespace

Catalog readCsv(const fileString& path, const BuildOptions& options)
{
    return CsvSource(path, options).catalog();
}

}  // namespace VelkHost
