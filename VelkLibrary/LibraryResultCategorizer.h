#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/Search/PreparedNames.h>
#include <VelkLibrary/SearchPriority.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

/// Rates the names of library folders and items against one search.
///
/// Built once per search; immutable afterwards, so one categorizer may serve any number of threads, and
/// copies share what was built. One that was moved from may only be assigned to or destroyed.
/// Names and keywords are UTF-8 of any length, compared in lower case. A term is a literal; word
/// characters are ASCII letters, digits and "_", whatever the locale. Where a text holds line breaks (LF or
/// CR), only a term that covers them all is found, because they are matched as by a regular expression whose
/// "." stops at them. A rating allocates nothing after the first one on its thread.
class VELKLIBRARY_EXPORT LibraryResultCategorizer
{
public:
    /// Takes the terms and the flags `legacySearch` and `textSearch` of `info`. A search without a
    /// group rates everything `Invalid`.
    LibraryResultCategorizer(const Library::Search::Info& info);

    /// Rates a folder's name: `Invalid` or one of the folder values.
    SearchPriority categorizeFolderResult(const std::string& folderName) const;

    /// Rates an item's name: `Invalid` or one of the item values.
    SearchPriority categorizeItemResult(const std::string& itemName) const;

    /// Rates an item's name together with all of its keywords in one text: for each term the better of the two
    /// matches counts. An excluded term in either text excludes the item.
    SearchPriority categorizeItemResult(const std::string& itemName, const std::string& keywords) const;

    /// Rates `priorities.size()` entries from the entry `begin` on: writes what the call for a folder, an item or an
    /// item with keywords gives for each, as SearchPriority; `Invalid` where there is no such entry. Much faster than
    /// those calls; threads may share the work by taking ranges, best of some thousand entries or more. Throws
    /// std::bad_alloc when there is no memory for what it notes meanwhile, less than a megabyte for usual searches;
    /// then `priorities` are unspecified, and the next call may succeed.
    void categorize(const Library::Search::PreparedNames& names, std::size_t begin,
                    std::span<std::uint8_t> priorities) const;

    /// Whether the search is one by text (Search::Info::textSearch), for the host.
    bool isTextSearch() const noexcept;

private:
    struct Matchers;
    std::shared_ptr<const Matchers> matchers_;
};
