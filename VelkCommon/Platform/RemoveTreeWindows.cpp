#include <VelkCommon/Platform/RemoveTree.h>

#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Platform/detail/Windows.h>

#include <memory>
#include <utility>
#include <vector>

namespace Velk::Platform {
namespace {

// Empties a tree. While a folder is worked on, it is held open without the right to rename or delete
// it, so that no link can take its place.
class TreeRemover
{
public:
    explicit TreeRemover(bool overrideReadOnly) : overrideReadOnly_(overrideReadOnly) {}

    // Whether the folder and everything below it are gone.
    bool remove(std::wstring root)
    {
        enter(std::move(root));
        while (!levels_.empty())
            if (levels_.back().folders.empty())
                leave();
            else
                descend();
        return complete_;
    }

private:
    struct Level
    {
        std::wstring path;
        std::unique_ptr<Handle> hold;
        std::vector<std::wstring> folders;
    };

    void enter(std::wstring path)
    {
        auto hold = std::make_unique<Handle>(
            ::CreateFileW(path.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                          FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
        BY_HANDLE_FILE_INFORMATION found = {};
        const bool entered = *hold && ::GetFileInformationByHandle(hold->get(), &found) != 0;
        if (!entered || isLink(found.dwFileAttributes)) {
            complete_ = false;
            return;
        }
        levels_.push_back({std::move(path), std::move(hold), {}});
        clear();
    }

    // Deletes files and links; folders are left to descend().
    void clear()
    {
        Level& level = levels_.back();
        WIN32_FIND_DATAW entry = {};
        const HANDLE search = ::FindFirstFileW((level.path + L"\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE) {
            complete_ = false;
            return;
        }
        do {
            const std::wstring_view name = entry.cFileName;
            if (name == L"." || name == L"..")
                continue;
            if (isFolder(entry.dwFileAttributes) && !isLink(entry.dwFileAttributes))
                level.folders.emplace_back(name);
            else if (!removeOne((level.path + L"\\").append(name), entry.dwFileAttributes, overrideReadOnly_))
                complete_ = false;
        } while (::FindNextFileW(search, &entry) != 0);
        ::FindClose(search);
    }

    void descend()
    {
        Level& level = levels_.back();
        std::wstring child = level.path + L"\\" + level.folders.back();
        level.folders.pop_back();
        enter(std::move(child));
    }

    void leave()
    {
        const std::wstring path = std::move(levels_.back().path);
        levels_.pop_back();
        const DWORD attributes = attributesOf(path);
        if (attributes == INVALID_FILE_ATTRIBUTES || !removeOne(path, attributes, overrideReadOnly_))
            complete_ = false;
    }

    bool overrideReadOnly_;
    bool complete_ = true;
    std::vector<Level> levels_;
};

// The path in its long form, because the paths below a folder may become too long for the plain form.
std::wstring withLongPrefix(std::wstring path)
{
    if (path.starts_with(longPrefix))
        return path;
    if (path.starts_with(L"\\\\"))
        return std::wstring(longShare) + resolved(std::wstring_view(path).substr(2));
    return std::wstring(longPrefix) + path.substr(0, 3) + resolved(std::wstring_view(path).substr(3));
}

}  // namespace

bool removeTree(const std::string& path, bool overrideReadOnly)
{
    const std::wstring name = systemPath(path);
    const DWORD attributes = attributesOf(name);
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    if (isLink(attributes))
        return removeOne(name, attributes, overrideReadOnly);
    return isFolder(attributes) && TreeRemover(overrideReadOnly).remove(withLongPrefix(fullPath(name)));
}

}  // namespace Velk::Platform
