#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// The host's search for files by name; the library only tells it when files were added.
class VELKCOMMON_EXPORT FileSearch
{
public:
    /// The process-wide search.
    static FileSearch& get();

    /// Tells the host that files were added to `folder`, so that anything it remembers about that folder
    /// is out of date. Without a host nothing happens. Never throws. Any thread.
    void resetFileSearch(const fileString& folder);

private:
    FileSearch() = default;
};
