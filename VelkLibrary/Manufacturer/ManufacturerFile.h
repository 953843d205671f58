#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Manufacturer/Manufacturer.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <map>
#include <string>

/// The content of a manufacturers' data file, as ManufacturerManager describes it: a plain value, for
/// callers that want to know what a file holds or whether it was written. In a folder where nothing can be replaced,
/// the file is written in place, with a backup in the host's folder of the user, from which read() puts back what a
/// crash has torn.
///
///     ManufacturerFile file;
///     if (const Library::DataFileResult result = file.read(path); !result)
///         tell(result);
///
/// Any thread; a value is used by one thread at a time. Throws nothing but `std::bad_alloc`.
struct VELKLIBRARY_EXPORT ManufacturerFile
{
    using Cards = std::map<long, Manufacturer>;  ///< by their ids

    Cards cards;                 ///< one for each manufacturer
    std::u32string defaultText;  ///< shown in place of the marker "default"
    /// When the file as a whole was changed last, UTC. When nothing was read, a time earlier than that of any
    /// file (1400-01-01).
    boost::posix_time::ptime lastModified = boost::posix_time::ptime(boost::date_time::min_date_time);

    /// Replaces this value with what the file at `path` holds. One fault makes the whole file unreadable: this
    /// value is then empty. After an exception it may hold anything. Where the file has no default text, the
    /// host's text 10108 is taken; where it has no time, the current time.
    Library::DataFileResult read(const fileString& path);

    /// Replaces the file at `path` with the cards and the default text, completely or not at all. The current
    /// time is written as the file's. Everyone may change the file afterwards. Its folder must exist.
    Library::DataFileResult write(const fileString& path) const;

    /// Sets the last change of those of `cards` that differ from the card with the same id in `before` (the fax
    /// does not count) to the current time. New cards keep their time.
    static void stampChanges(Cards& cards, const Cards& before);
};
