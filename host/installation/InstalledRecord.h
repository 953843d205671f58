#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace VelkHost {

/// A file as it was when it had been put in place.
struct InstalledFile
{
    std::uint64_t size = 0;     ///< bytes
    std::int64_t modified = 0;  ///< the time of its last change, in units of the system
    std::string sha1;           ///< hexadecimal

    friend bool operator==(const InstalledFile&, const InstalledFile&) = default;
};

/// The state of a file now. With `before`, its SHA-1 is taken from there when size and time are the same. Nothing when
/// the file is not there or cannot be read.
std::optional<InstalledFile> stateOf(const fileString& path, const std::optional<InstalledFile>& before = {});

/// What the record knows about one library.
struct InstalledLibrary
{
    std::string tag;                          ///< the service's version; empty when nothing of it was installed
    std::optional<InstalledFile> database;    ///< its catalog file
    std::optional<InstalledFile> referenced;  ///< the archive of its other files
    bool toldGone = false;                    ///< the user knows that the service no longer has it

    friend bool operator==(const InstalledLibrary&, const InstalledLibrary&) = default;
};

/// The installation's own record of the libraries that updates have installed: a text file to which each change is
/// appended, so that a change costs the same with ten thousand libraries. A line that was cut off by a crash counts for
/// nothing; what is missing in the record is compared with the service anew. One thread, one process at a time (see
/// lockUpdates()).
class InstalledRecord
{
public:
    /// By the kind of library and the name of its catalog file.
    using Key = std::pair<std::uint32_t, std::string>;

    /// Reads the record of the installation, if there is one.
    InstalledRecord();

    const std::map<Key, InstalledLibrary>& libraries() const noexcept { return libraries_; }
    /// What is known about a library; an empty value when nothing is.
    InstalledLibrary find(const Key& key) const;

    /// Replaces what is known about a library. Throws FileError when that cannot be written.
    void set(const Key& key, const InstalledLibrary& library);

    /// The record's file.
    static fileString path();

private:
    void take(std::string_view line);
    void rewrite() const;

    std::map<Key, InstalledLibrary> libraries_;
    std::size_t lines_ = 0;
};

}  // namespace VelkHost
