#include <VelkCommon/Platform/FolderEntries.h>

#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Platform/detail/Windows.h>

#include <string_view>
#include <utility>

namespace Velk::Platform {
namespace {

class Search
{
public:
    Search(const std::wstring& pattern, WIN32_FIND_DATAW& first) : handle_(::FindFirstFileW(pattern.c_str(), &first)) {}
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;
    ~Search()
    {
        if (*this)
            ::FindClose(handle_);
    }

    explicit operator bool() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
    bool next(WIN32_FIND_DATAW& entry) const noexcept { return ::FindNextFileW(handle_, &entry) != 0; }

private:
    HANDLE handle_;
};

std::error_code systemError(DWORD code) noexcept
{
    return {static_cast<int>(code), std::system_category()};
}

FolderEntry entryOf(const std::string& folder, const WIN32_FIND_DATAW& found)
{
    std::string name = fromNativePath(found.cFileName);
    bool leadsToFolder = isFolder(found.dwFileAttributes);
    if (leadsToFolder && isLink(found.dwFileAttributes)) {
        const auto target = fileStatus(folder + separator + name);
        leadsToFolder = target && target->folder;
    }
    return {std::move(name), leadsToFolder};
}

}  // namespace

std::vector<FolderEntry> folderEntries(const std::string& path, std::error_code& error)
{
    error.clear();
    const std::wstring folder = systemPath(path);
    if (folder.empty()) {
        error = systemError(ERROR_PATH_NOT_FOUND);
        return {};
    }
    WIN32_FIND_DATAW found = {};
    const Search search(folder + (folder.back() == L'\\' ? L"*" : L"\\*"), found);
    if (!search) {
        // A root has no entry for itself, so an empty one holds nothing that matches.
        const DWORD code = ::GetLastError();
        if (code != ERROR_FILE_NOT_FOUND)
            error = systemError(code);
        return {};
    }
    std::vector<FolderEntry> entries;
    do {
        const std::wstring_view name = found.cFileName;
        if (name != L"." && name != L"..")
            entries.push_back(entryOf(path, found));
    } while (search.next(found));
    if (const DWORD code = ::GetLastError(); code != ERROR_NO_MORE_FILES) {
        error = systemError(code);
        return {};
    }
    return entries;
}

}  // namespace Velk::Platform
