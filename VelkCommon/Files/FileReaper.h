#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// Deletes a file when the object goes out of scope, unless cancel() was called. It is meant for files
/// that must not be left behind, however the scope is left. Declare it before the stream that writes the file, so that
/// the stream is closed first. Never throws; a missing file is fine.
class VELKCOMMON_EXPORT FileReaper
{
public:
    /// Guards the file at `path`, which need not exist yet.
    FileReaper(fileString path) noexcept;
    ~FileReaper();
    FileReaper(const FileReaper&) = delete;
    FileReaper& operator=(const FileReaper&) = delete;

    /// Keeps the file.
    void cancel() noexcept { cancelled_ = true; }

private:
    fileString path_;
    bool cancelled_ = false;
};
