#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Manufacturer/Manufacturer.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <map>
#include <string>

/// The content of a manufacturers' data file, as ManufacturerManager describes it: a plain value without a part
/// in any global state, for whoever wants to know what a file holds or whether it was written.
///
///     ManufacturerFile file;
///     if (const Library::DataFileResult result = file.read(path); !result)
///         tell(result);
///
/// Any thread; a value is used by one thread at a time. Throws nothing but `std::bad_alloc`.
struct VELKLIBRARY_EXPORT ManufacturerFile
{
    using Cards = std::map<long, Manufacturer>;  ///< by their ids

    Cards cards;
    std::u32string defaultText;  ///< stands in place of the marker "default"
    /// Of the file as a whole, UTC; when nothing was read, earlier than that of any file (1400-01-01).
    boost::posix_time::ptime lastModified = boost::posix_time::ptime(boost::date_time::min_date_time);

    /// Replaces this value by what the file at `path` holds. A file with a fault counts as unreadable as a whole:
    /// this value is empty then, and when it throws, it may hold anything. Where the file has no default text,
    /// the host's text 10108 is taken; where it has no time, the current one.
    Library::DataFileResult read(const fileString& path);

    /// Puts the cards and the default text in the place of the file at `path`, whole or not at all, with the
    /// current time as the file's. Everyone may change the file afterwards. Its folder must be there.
    Library::DataFileResult write(const fileString& path) const;

    /// Gives those of `cards` that differ from the one of the same id in `before` (the fax does not count) the
    /// current time as their last change. New ones keep their time.
    static void stampChanges(Cards& cards, const Cards& before);
};
