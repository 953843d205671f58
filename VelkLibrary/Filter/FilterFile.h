#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryFilter.h>

#include <cstddef>
#include <vector>

/// The content of a filter file, as LibraryFilterManager describes it: a plain value, for callers that want
/// to know what a file holds or whether it was written. In a folder where nothing can be replaced, the file is written
/// in place, with a backup in the host's folder of the user, from which read() puts back what a crash has torn.
///
///     FilterFile file;
///     if (const Library::DataFileResult result = file.read(path); !result)
///         tell(result);
///
/// Any thread; a value is used by one thread at a time. Throws nothing but `std::bad_alloc`.
struct VELKLIBRARY_EXPORT FilterFile
{
    long currentId = -1;                 ///< the id of the filter in force; -1 for none
    std::vector<LibraryFilter> filters;  ///< in the reader's order, the reverse of the file's

    /// Replaces this value with what the file at `path` holds. After a fault this value holds what was read
    /// before the fault, and nothing when there is no file or it is not a filter file. After an exception it
    /// may hold anything. Filters without a name or with the id -1 are left out.
    Library::DataFileResult read(const fileString& path);

    /// Replaces the file at `path` with this value, completely or not at all. The filters are written in the
    /// order of the list; an empty list is written, too. Everyone may change the file afterwards. Its folder
    /// must exist.
    Library::DataFileResult write(const fileString& path) const;

    /// Appends those of `others` that the list does not hold yet (same name, same libraries), and returns how
    /// many they are. They get the lowest free ids from 0 on, and a name that is taken gets a number, as in
    /// "Baths 1".
    std::size_t merge(const std::vector<LibraryFilter>& others);
};
