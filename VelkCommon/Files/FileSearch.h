#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// The host's search for files by name, as far as the library has to tell it something.
class VELKCOMMON_EXPORT FileSearch
{
public:
    /// The process-wide search.
    static FileSearch& get();

    /// Tells the host that files came into `folder`, so that what it remembers of it is out of date.
    /// Without a host nothing happens. Never throws. Any thread.
    void resetFileSearch(const fileString& folder);

private:
    FileSearch() = default;
};
