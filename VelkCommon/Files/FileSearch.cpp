#include <VelkCommon/Files/FileSearch.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/detail/AskHost.h>

FileSearch& FileSearch::get()
{
    static FileSearch search;
    return search;
}

void FileSearch::resetFileSearch(const fileString& folder)
{
    Velk::detail::askHost(Velk::host()->fileSearchReset, folder);
}
