#include <VelkCommon/Files/FileSearch.h>

#include <VelkCommon/HostServices.h>

FileSearch& FileSearch::get()
{
    static FileSearch search;
    return search;
}

void FileSearch::resetFileSearch(const fileString& folder)
{
    try {
        const auto host = Velk::host();
        if (host->fileSearchReset)
            host->fileSearchReset(folder);
    } catch (...) {
        // The host remembers too much for a while; the files are there all the same.
    }
}
