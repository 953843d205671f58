#include "host/command/HitReport.h"

#include "host/installation/ItemJson.h"
#include "host/installation/SearchText.h"
#include "host/support/DisplayText.h"
#include "host/support/JsonText.h"
#include "host/support/TextTable.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cstddef>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::ptrdiff_t sizeColumn = 3;  // behind the name
constexpr std::string_view pathSeparator = " \u203A ";

std::string number(double value, int decimals)
{
    return formatWithThousandsSeparatorPrecision(value, decimals);
}

std::string wherePath(const Catalog& catalog, const Hit& hit)
{
    std::string where = catalog.name;
    for (const std::string& name : hitPath(catalog, hit))
        where.append(pathSeparator).append(name);
    return where;
}

TextTable::Row hitRow(const LibrarySet& libraries, const Hit& hit, std::size_t rank,
                      const std::vector<std::u32string>& terms)
{
    const Catalog& catalog = *libraries.loaded[hit.library].catalog;
    const std::string keywords = hit.isFolder ? std::string() : catalog.items[hit.index].keywords;
    return {plain(std::to_string(rank)), plain(matchName(hit.priority)), highlighted(hitName(catalog, hit), terms),
            plain(wherePath(catalog, hit)), highlighted(keywords, terms)};
}

ItemSize sizeOf(const LibrarySet& libraries, const Hit& hit)
{
    return hit.isFolder ? ItemSize() : libraries.loaded[hit.library].catalog->sizeOf(hit.index);
}

/// Whether there is a size to show.
bool anySize(const LibrarySet& libraries, const SearchResult& result, std::size_t shown)
{
    for (std::size_t i = 0; i < shown; ++i)
        if (sizeOf(libraries, result.hit(i)).isKnown())
            return true;
    return false;
}

std::string figures(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info)
{
    const std::size_t rated = result.ratedFolders + result.ratedItems;
    const double each = rated == 0 ? 0 : result.milliseconds * 1'000 / static_cast<double>(rated);
    std::string text = counted(result.size(), "hit") + ". ";
    text += info.uniqueId.empty() ? "Rated " : "Looked at ";
    text += counted(result.ratedItems, "item");
    if (result.ratedFolders > 0)
        text += " and " + counted(result.ratedFolders, "folder");
    text += " of " + counted(result.searchedLibraries, "library", "libraries") + " in " +
            number(result.milliseconds, 3) + " ms (" + number(each, 3) + " \u00B5s each); loading took " +
            number(libraries.milliseconds, 1) + " ms.\n";
    return text;
}

/// "7 more items do not fit. 3 have no size."
std::string leftOutLine(const SearchResult& result)
{
    std::string text;
    if (result.tooLarge > 0)
        text += counted(result.tooLarge, "more item") + (result.tooLarge == 1 ? " does" : " do") + " not fit. ";
    if (result.withoutSize > 0)
        text += counted(result.withoutSize, "item") + (result.withoutSize == 1 ? " has" : " have") + " no size. ";
    if (!text.empty())
        text.back() = '\n';
    return text;
}

QJsonObject hitObject(const LibrarySet& libraries, const Hit& hit)
{
    const LoadedLibrary& library = libraries.loaded[hit.library];
    QJsonArray path;
    for (const std::string& name : hitPath(*library.catalog, hit))
        path.append(qtText(name));
    QJsonObject object{{QStringLiteral("priority"), static_cast<int>(hit.priority)},
                       {QStringLiteral("match"), qtText(matchName(hit.priority))},
                       {QStringLiteral("kind"), hit.isFolder ? QStringLiteral("folder") : QStringLiteral("item")},
                       {QStringLiteral("name"), qtText(hitName(*library.catalog, hit))},
                       {QStringLiteral("library"), qtText(library.catalog->name)},
                       {QStringLiteral("path"), path}};
    if (!hit.isFolder) {
        object.insert(QStringLiteral("id"), qtText(library.catalog->items[hit.index].uniqueId));
        object.insert(QStringLiteral("keywords"), qtText(library.catalog->items[hit.index].keywords));
        addKnown(*library.catalog, hit.index, object);
    }
    return object;
}

QJsonArray libraryArray(const LibrarySet& libraries)
{
    QJsonArray array;
    for (const LoadedLibrary& library : libraries.loaded)
        array.append(QJsonObject{{QStringLiteral("path"), qtText(library.path.utf8())},
                                 {QStringLiteral("id"), qtText(library.catalog->id)},
                                 {QStringLiteral("name"), qtText(library.catalog->name)},
                                 {QStringLiteral("type"), qtText(kindName(library.catalog->kind))}});
    for (const BrokenLibrary& library : libraries.broken)
        array.append(QJsonObject{{QStringLiteral("path"), qtText(library.path.utf8())},
                                 {QStringLiteral("error"), qtText(library.reason)}});
    return array;
}

QJsonArray termArray(const std::vector<std::u32string>& terms)
{
    QJsonArray array;
    for (const std::u32string& term : terms)
        array.append(StringConvert::toQString(term));
    return array;
}

}  // namespace

std::string hitTable(const LibrarySet& libraries, const SearchResult& result, const Library::Search::Info& info,
                     const ReportStyle& style)
{
    const std::vector<std::u32string> terms = lowerTerms(info);
    const std::size_t shown = shownOf(result.size(), style.limit);
    const bool withSizes = anySize(libraries, result, shown);
    std::vector<TextTable::Column> columns{{"#", true, false},
                                           {"Match", false, false},
                                           {"Name", false, true},
                                           {"Where", false, true},
                                           {"Keywords", false, true}};
    if (withSizes)
        columns.insert(columns.begin() + sizeColumn, {"Size in mm", true, false});
    TextTable table(std::move(columns));
    for (std::size_t i = 0; i < shown; ++i) {
        const Hit hit = result.hit(i);
        TextTable::Row row = hitRow(libraries, hit, i + 1, terms);
        if (withSizes)
            row.insert(row.begin() + sizeColumn, plain(sizeText(sizeOf(libraries, hit))));
        table.add(row);
    }
    const std::string text = table.text(style.columns, style.styles) + moreLine(result.size(), style.limit);
    return text + (text.empty() ? "" : "\n") + leftOutLine(result) + figures(libraries, result, info);
}

std::string hitJson(const LibrarySet& libraries, const SearchResult& result, const SearchRequest& request,
                    std::size_t limit)
{
    QJsonArray hits;
    for (std::size_t i = 0; i < shownOf(result.size(), limit); ++i)
        hits.append(hitObject(libraries, result.hit(i)));
    const bool byId = !request.uniqueId.empty();
    const QString search = byId             ? QStringLiteral("id")
                           : request.legacy ? QStringLiteral("words")
                                            : QStringLiteral("expression");
    QJsonObject object{{QStringLiteral("search"), search},
                       {QStringLiteral("text"), qtText(byId ? request.uniqueId : request.text)},
                       {QStringLiteral("libraries"), libraryArray(libraries)},
                       {QStringLiteral("ratedItems"), static_cast<qint64>(result.ratedItems)},
                       {QStringLiteral("ratedFolders"), static_cast<qint64>(result.ratedFolders)},
                       {QStringLiteral("ratingMilliseconds"), result.milliseconds},
                       {QStringLiteral("loadingMilliseconds"), libraries.milliseconds},
                       {QStringLiteral("found"), static_cast<qint64>(result.size())},
                       {QStringLiteral("hits"), hits}};
    if (request.room.isLimited()) {
        object.insert(QStringLiteral("fits"), sizeJson({request.room.width, request.room.depth, request.room.height}));
        object.insert(QStringLiteral("tooLarge"), static_cast<qint64>(result.tooLarge));
        object.insert(QStringLiteral("withoutSize"), static_cast<qint64>(result.withoutSize));
    }
    if (!request.filter.empty())
        object.insert(QStringLiteral("filter"), qtText(request.filter));
    return jsonText(object);
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
