#include "host/command/FilterReport.h"

#include "host/support/JsonText.h"
#include "host/support/TextTable.h"

#include <VelkCommon/Text/StringUtils.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace VelkHost {
namespace {

/// The list's own order turns round with every save, so it says nothing to people.
void sortByName(std::vector<LibraryFilter>& filters)
{
    std::stable_sort(filters.begin(), filters.end(), [](const LibraryFilter& left, const LibraryFilter& right) {
        return StringUtils::toLowerUtf8(left.getFilterName()) < StringUtils::toLowerUtf8(right.getFilterName());
    });
}

QJsonArray textArray(const std::vector<std::string>& texts)
{
    QJsonArray array;
    for (const std::string& text : texts)
        array.append(qtText(text));
    return array;
}

QJsonObject filterObject(const LibraryFilter& filter, long current)
{
    return {{QStringLiteral("name"), qtText(filter.getFilterName())},
            {QStringLiteral("id"), static_cast<int>(filter.getFilterId())},
            {QStringLiteral("current"), filter.getFilterId() == current},
            {QStringLiteral("libraries"), textArray(filter.getDatabaseIds())}};
}

/// Null when no such library is installed.
const LoadedLibrary* libraryWithId(const LibrarySet& installed, const std::string& id)
{
    const auto found = std::find_if(installed.loaded.begin(), installed.loaded.end(),
                                    [&](const LoadedLibrary& library) { return library.catalog->id == id; });
    return found == installed.loaded.end() ? nullptr : &*found;
}

}  // namespace

std::string filterTable(std::vector<LibraryFilter> filters, long current, std::size_t columns)
{
    sortByName(filters);
    TextTable table({{"", false, false}, {"Name", false, true}, {"Id", true, false}, {"Libraries", true, false}});
    for (const LibraryFilter& filter : filters)
        table.add(std::vector<std::string>{filter.getFilterId() == current ? "*" : "", filter.getFilterName(),
                                           std::to_string(filter.getFilterId()),
                                           std::to_string(filter.getDatabaseIds().size())});
    return filters.empty() ? "There are no filters; \"velk filter add\" makes one.\n" : table.text(columns, false);
}

std::string filterJson(std::vector<LibraryFilter> filters, long current)
{
    sortByName(filters);
    QJsonArray array;
    for (const LibraryFilter& filter : filters)
        array.append(filterObject(filter, current));
    return jsonText({{QStringLiteral("currentId"), static_cast<int>(current)}, {QStringLiteral("filters"), array}});
}

std::string filteredLibraryTable(const LibraryFilter& filter, const LibrarySet& installed, std::size_t columns)
{
    TextTable table({{"Library", false, true}, {"Name", false, true}, {"Type", false, false}});
    for (const std::string& id : filter.getDatabaseIds()) {
        const LoadedLibrary* const library = libraryWithId(installed, id);
        table.add(std::vector<std::string>{id, library != nullptr ? library->catalog->name : "(not installed)",
                                           library != nullptr ? std::string(kindName(library->catalog->kind)) : ""});
    }
    const std::string lines = table.text(columns, false);
    return lines.empty() ? "The filter names no library, so nothing passes it.\n" : lines;
}

std::string filteredLibraryJson(const LibraryFilter& filter, const LibrarySet& installed, long current)
{
    QJsonArray libraries;
    for (const std::string& id : filter.getDatabaseIds()) {
        QJsonObject object{{QStringLiteral("id"), qtText(id)}, {QStringLiteral("installed"), false}};
        if (const LoadedLibrary* const library = libraryWithId(installed, id)) {
            object[QStringLiteral("installed")] = true;
            object.insert(QStringLiteral("name"), qtText(library->catalog->name));
            object.insert(QStringLiteral("type"), qtText(kindName(library->catalog->kind)));
            object.insert(QStringLiteral("path"), qtText(library->path.utf8()));
        }
        libraries.append(object);
    }
    QJsonObject object = filterObject(filter, current);
    object[QStringLiteral("libraries")] = libraries;
    return jsonText(object);
}

std::string currentFilterJson(const LibraryFilter& filter)
{
    const long id = filter.getFilterId();
    return jsonText({{QStringLiteral("current"), id == noFilterId ? QJsonValue() : filterObject(filter, id)}});
}

std::string mergeText(const FilterMerge& merge, const fileString& path)
{
    std::string text;
    for (const std::string& name : merge.came)
        text += "  " + printableUtf8(name) + "\n";
    text += counted(merge.came.size(), "filter") + " added from " + printableUtf8(path.humanReadableString());
    if (merge.present > 0)
        text += "; " + counted(merge.present, "filter") + (merge.present == 1 ? " was" : " were") + " here already";
    return text + ".\n";
}

std::string mergeJson(const FilterMerge& merge)
{
    return jsonText({{QStringLiteral("came"), textArray(merge.came)},
                     {QStringLiteral("present"), static_cast<qint64>(merge.present)}});
}

}  // namespace VelkHost
