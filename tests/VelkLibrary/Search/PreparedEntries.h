#pragma once

/// @file
/// Entries that are rated in bulk, and one by one to compare with.

#include <VelkLibrary/LibraryResultCategorizer.h>
#include <VelkLibrary/Search/PreparedNames.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test {

struct PreparedEntry
{
    std::string name;
    std::optional<std::string> keywords = {};
    bool isFolder = false;
};

inline PreparedEntry folderEntry(std::string name)
{
    return {std::move(name), std::nullopt, true};
}

inline PreparedEntry itemEntry(std::string name)
{
    return {std::move(name)};
}

inline PreparedEntry itemEntry(std::string name, std::string keywords)
{
    return {std::move(name), std::move(keywords)};
}

inline void add(Library::Search::PreparedNames& names, const PreparedEntry& entry)
{
    if (entry.isFolder)
        names.addFolder(entry.name);
    else if (entry.keywords)
        names.addItem(entry.name, *entry.keywords);
    else
        names.addItem(entry.name);
}

inline Library::Search::PreparedNames prepared(const std::vector<PreparedEntry>& entries)
{
    Library::Search::PreparedNames names;
    for (const PreparedEntry& entry : entries)
        add(names, entry);
    names.close();
    return names;
}

inline std::vector<SearchPriority> ratingsInBulk(const LibraryResultCategorizer& categorizer,
                                                 const Library::Search::PreparedNames& names, std::size_t begin,
                                                 std::size_t count)
{
    std::vector<std::uint8_t> bytes(count, 0xEE);
    categorizer.categorize(names, begin, bytes);
    std::vector<SearchPriority> ratings;
    for (const std::uint8_t byte : bytes)
        ratings.push_back(static_cast<SearchPriority>(byte));
    return ratings;
}

inline std::vector<SearchPriority> ratingsInBulk(const LibraryResultCategorizer& categorizer,
                                                 const std::vector<PreparedEntry>& entries)
{
    return ratingsInBulk(categorizer, prepared(entries), 0, entries.size());
}

/// The rating of one entry by a categorizer's calls by name, or by an oracle.
inline SearchPriority ratingByName(const LibraryResultCategorizer& categorizer, const PreparedEntry& entry)
{
    if (entry.isFolder)
        return categorizer.categorizeFolderResult(entry.name);
    return entry.keywords ? categorizer.categorizeItemResult(entry.name, *entry.keywords)
                          : categorizer.categorizeItemResult(entry.name);
}

template <typename Oracle>
SearchPriority ratingByOracle(const Oracle& oracle, const PreparedEntry& entry)
{
    if (entry.isFolder)
        return oracle.folder(entry.name);
    return entry.keywords ? oracle.item(entry.name, *entry.keywords) : oracle.item(entry.name);
}

}  // namespace test
