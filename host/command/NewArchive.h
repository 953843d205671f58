#pragma once

#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Files/fileString.h>

#include <zip.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace VelkHost {

/// A zip archive that is made from files and bytes. It appears at its place once close() has succeeded; until
/// then, and after a failure, the older file stays. Failures throw FileError.
class NewArchive
{
public:
    explicit NewArchive(const fileString& target);
    ~NewArchive();
    NewArchive(const NewArchive&) = delete;
    NewArchive& operator=(const NewArchive&) = delete;

    /// Adds a file under a name (UTF-8). It is read by close().
    void addFile(const std::string& name, const fileString& path);
    /// Adds bytes under a name (UTF-8). They must live until close() has returned.
    void addBytes(const std::string& name, std::string_view bytes);

    /// Lets close() tell how much is done (from 0 to 1) and ask whether to give up.
    void watch(std::function<void(double share)> show, std::function<bool()> cancelled);

    /// Writes the archive; false when that was given up.
    bool close();

private:
    void add(const std::string& name, zip_source_t* source);
    void requireComplete() const;

    fileString target_;
    WorkFolder folder_;  // beside the target; the library below leaves its unfinished files there
    fileString made_;
    zip_t* archive_;
    std::map<std::string, std::uint64_t> sizes_;  // of the data, by the names of the entries
    std::function<void(double)> show_;
    std::function<bool()> cancelled_;
};

}  // namespace VelkHost
