#include "host/command/HitReport.h"

#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace VelkHost {
namespace {

constexpr std::size_t columnCount = 5;
constexpr std::size_t firstFlexible = 2;    // the columns from here on give way on a narrow terminal
constexpr std::size_t narrowestColumn = 8;  // characters
constexpr std::string_view columnGap = "  ";
constexpr std::string_view pathSeparator = " \u203A ";

using Row = std::array<StyledText, columnCount>;

std::string number(double value, int decimals)
{
    return formatWithThousandsSeparatorPrecision(value, decimals);
}

std::string counted(std::size_t count, const std::string& singular, const std::string& plural)
{
    return number(static_cast<double>(count), 0) + " " + (count == 1 ? singular : plural);
}

StyledText plain(std::string_view text)
{
    return highlighted(text, {});
}

std::vector<std::u32string> lowerTerms(const Library::Search::Info& info)
{
    std::vector<std::u32string> terms;
    for (const Library::Search::ORGroup& group : info.parseTree.groups)
        for (const std::u32string& term : group.terms)
            terms.push_back(StringUtils::toLower(term));
    return terms;
}

std::string wherePath(const LibrarySet& libraries, const Hit& hit)
{
    std::string where = libraries.loaded[hit.library].catalog.name;
    for (const std::string& name : hitPath(libraries, hit))
        where.append(pathSeparator).append(name);
    return where;
}

Row hitRow(const LibrarySet& libraries, const Hit& hit, std::size_t rank, const std::vector<std::u32string>& terms)
{
    const Catalog& catalog = libraries.loaded[hit.library].catalog;
    const std::string keywords = hit.isFolder ? std::string() : catalog.items[hit.index].keywords;
    return {plain(std::to_string(rank)), plain(matchName(hit.priority)), highlighted(hitName(libraries, hit), terms),
            plain(wherePath(libraries, hit)), highlighted(keywords, terms)};
}

using Widths = std::array<std::size_t, columnCount>;

/// What the columns take in all when no flexible one is wider than `cap`.
std::size_t totalWidth(const Widths& widths, std::size_t cap)
{
    std::size_t total = columnGap.size() * (columnCount - 1);
    for (std::size_t i = 0; i < columnCount; ++i)
        total += i < firstFlexible ? widths[i] : std::min(widths[i], cap);
    return total;
}

/// The columns' widths: what they need, or less in the flexible ones when the terminal is narrow. The
/// widest gives way first, so that short columns stay whole.
Widths columnWidths(const std::vector<Row>& rows, std::size_t columns)
{
    Widths widths{};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < columnCount; ++i)
            widths[i] = std::max(widths[i], displayWidth(row[i].text));
    if (columns == 0)
        return widths;
    std::size_t cap = *std::max_element(widths.begin() + firstFlexible, widths.end());
    while (cap > narrowestColumn && totalWidth(widths, cap) > columns)
        --cap;
    for (std::size_t i = firstFlexible; i < columnCount; ++i)
        widths[i] = std::min(widths[i], cap);
    return widths;
}

std::string tableLine(const Row& row, const Widths& widths, bool styles)
{
    std::string line;
    for (std::size_t i = 0; i < columnCount; ++i) {
        const StyledText cell = cutToWidth(row[i], widths[i]);
        const std::string padding(widths[i] - displayWidth(cell.text), ' ');
        const bool rightAligned = i == 0;
        line += (i == 0 ? "" : std::string(columnGap)) + (rightAligned ? padding : "") + render(cell, styles) +
                (rightAligned ? "" : padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::size_t shownHits(const SearchResult& result, std::size_t limit)
{
    return limit == 0 ? result.hits.size() : std::min(limit, result.hits.size());
}

std::string figures(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info)
{
    const std::size_t rated = result.ratedFolders + result.ratedItems;
    const double each = rated == 0 ? 0 : result.milliseconds * 1'000 / static_cast<double>(rated);
    std::string text = counted(result.hits.size(), "hit", "hits") + ". ";
    text += info.uniqueId.empty() ? "Rated " : "Looked at ";
    text += counted(result.ratedItems, "item", "items");
    if (result.ratedFolders > 0)
        text += " and " + counted(result.ratedFolders, "folder", "folders");
    text += " of " + counted(result.searchedLibraries, "library", "libraries") + " in " +
            number(result.milliseconds, 3) + " ms (" + number(each, 3) + " \u00B5s each); loading took " +
            number(libraries.milliseconds, 1) + " ms.\n";
    return text;
}

QString qtText(std::string_view text)
{
    return StringConvert::toQString(text, StringConvert::Utf8);
}

QJsonObject hitObject(const LibrarySet& libraries, const Hit& hit)
{
    const LoadedLibrary& library = libraries.loaded[hit.library];
    QJsonArray path;
    for (const std::string& name : hitPath(libraries, hit))
        path.append(qtText(name));
    QJsonObject object{{QStringLiteral("priority"), static_cast<int>(hit.priority)},
                       {QStringLiteral("match"), qtText(matchName(hit.priority))},
                       {QStringLiteral("kind"), hit.isFolder ? QStringLiteral("folder") : QStringLiteral("item")},
                       {QStringLiteral("name"), qtText(hitName(libraries, hit))},
                       {QStringLiteral("library"), qtText(library.catalog.name)},
                       {QStringLiteral("path"), path}};
    if (!hit.isFolder) {
        object.insert(QStringLiteral("id"), qtText(library.catalog.items[hit.index].uniqueId));
        object.insert(QStringLiteral("keywords"), qtText(library.catalog.items[hit.index].keywords));
    }
    return object;
}

QJsonArray libraryArray(const LibrarySet& libraries)
{
    QJsonArray array;
    for (const LoadedLibrary& library : libraries.loaded)
        array.append(QJsonObject{{QStringLiteral("path"), qtText(library.path.utf8())},
                                 {QStringLiteral("id"), qtText(library.catalog.id)},
                                 {QStringLiteral("name"), qtText(library.catalog.name)},
                                 {QStringLiteral("type"), qtText(kindName(library.catalog.kind))}});
    for (const BrokenLibrary& library : libraries.broken)
        array.append(QJsonObject{{QStringLiteral("path"), qtText(library.path.utf8())},
                                 {QStringLiteral("error"), qtText(library.reason)}});
    return array;
}

std::string jsonText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

std::string quotedTerms(const std::vector<std::u32string>& terms)
{
    std::string text;
    for (const std::u32string& term : terms)
        text += (text.empty() ? "\"" : ", \"") + printableUtf8(StringConvert::toStdUtf8String(term)) + "\"";
    return text;
}

QJsonArray termArray(const std::vector<std::u32string>& terms)
{
    QJsonArray array;
    for (const std::u32string& term : terms)
        array.append(StringConvert::toQString(term));
    return array;
}

}  // namespace

std::string matchName(SearchPriority priority)
{
    if (priority == Invalid)
        return "Id";
    // The library has no text for this one priority.
    return priority == ItemWordBeginsWithSequence ? "ItemWordBeginsWithSequence"
                                                  : SearchPriorityUtils::to_string(priority);
}

std::string hitTable(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info,
                     const ReportStyle& style)
{
    const std::size_t shown = shownHits(result, style.limit);
    const std::vector<std::u32string> terms = lowerTerms(info);
    std::vector<Row> rows{{plain("#"), plain("Match"), plain("Name"), plain("Where"), plain("Keywords")}};
    for (std::size_t i = 0; i < shown; ++i)
        rows.push_back(hitRow(libraries, result.hits[i], i + 1, terms));
    std::string table;
    const Widths widths = columnWidths(rows, style.columns);
    for (const Row& row : rows)
        if (shown > 0)
            table += tableLine(row, widths, style.styles);
    if (shown < result.hits.size())
        table +=
            "... and " + number(static_cast<double>(result.hits.size() - shown), 0) + " more (--limit 0 shows all)\n";
    return table + (table.empty() ? "" : "\n") + figures(libraries, result, info);
}

std::string hitJson(const LibrarySet& libraries, const SearchResult& result, const SearchRequest& request,
                    std::size_t limit)
{
    QJsonArray hits;
    for (std::size_t i = 0; i < shownHits(result, limit); ++i)
        hits.append(hitObject(libraries, result.hits[i]));
    const bool byId = !request.uniqueId.empty();
    const QString search = byId             ? QStringLiteral("id")
                           : request.legacy ? QStringLiteral("words")
                                            : QStringLiteral("expression");
    return jsonText({{QStringLiteral("search"), search},
                     {QStringLiteral("text"), qtText(byId ? request.uniqueId : request.text)},
                     {QStringLiteral("libraries"), libraryArray(libraries)},
                     {QStringLiteral("ratedItems"), static_cast<qint64>(result.ratedItems)},
                     {QStringLiteral("ratedFolders"), static_cast<qint64>(result.ratedFolders)},
                     {QStringLiteral("ratingMilliseconds"), result.milliseconds},
                     {QStringLiteral("loadingMilliseconds"), libraries.milliseconds},
                     {QStringLiteral("found"), static_cast<qint64>(result.hits.size())},
                     {QStringLiteral("hits"), hits}});
}

std::string explainText(const Library::Search::Info& info)
{
    const std::vector<Library::Search::ORGroup>& groups = info.parseTree.groups;
    if (groups.empty())
        return "Nothing to search for: there is no term that an entry must have.\n";
    std::string text = groups.size() == 1 ? "An entry is found when it has what this asks for:\n"
                                          : "An entry is found when it has what one of these " +
                                                std::to_string(groups.size()) + " alternatives asks for:\n";
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::string ordinal = std::to_string(i + 1);
        text.append("\n").append(ordinal).append(". all of:  ").append(quotedTerms(groups[i].terms)).append("\n");
        if (!groups[i].excludedTerms.empty())
            text.append(ordinal.size() + 2, ' ')
                .append("none of: ")
                .append(quotedTerms(groups[i].excludedTerms))
                .append("\n");
    }
    return text;
}

std::string explainJson(const Library::Search::Info& info)
{
    QJsonArray groups;
    for (const Library::Search::ORGroup& group : info.parseTree.groups)
        groups.append(QJsonObject{{QStringLiteral("terms"), termArray(group.terms)},
                                  {QStringLiteral("excludedTerms"), termArray(group.excludedTerms)}});
    return jsonText({{QStringLiteral("groups"), groups}, {QStringLiteral("wholeWordsOnly"), info.legacySearch}});
}

}  // namespace VelkHost
