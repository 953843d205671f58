#include <VelkCommon/Platform/FileSystem.h>

#include <VelkCommon/Platform/detail/Windows.h>

#include <aclapi.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace Velk::Platform {
namespace {

// 1601-01-01 to 1970-01-01, in units of 100 ns.
constexpr long long epoch = 116444736000000000LL;
constexpr long long ticksPerSecond = 10000000LL;
constexpr long long nanosecondsPerTick = 100;

bool setAccessList(const std::wstring& path)
{
    // By number, because the group's name depends on the language of the system.
    SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
    SID everyone = {};
    if (::InitializeSid(&everyone, &world, 1) == 0)
        return false;
    *::GetSidSubAuthority(&everyone, 0) = SECURITY_WORLD_RID;
    EXPLICIT_ACCESSW entry = {};
    entry.grfAccessPermissions = GENERIC_ALL;
    entry.grfAccessMode = GRANT_ACCESS;
    entry.grfInheritance = SUB_CONTAINERS_AND_OBJECTS_INHERIT;
    entry.Trustee.TrusteeForm = TRUSTEE_IS_SID;
    entry.Trustee.TrusteeType = TRUSTEE_IS_WELL_KNOWN_GROUP;
    entry.Trustee.ptstrName = reinterpret_cast<LPWSTR>(&everyone);

    std::wstring name = path;
    PACL present = nullptr;
    LocalMemory<void> descriptor;
    if (::GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &present,
                                nullptr, &descriptor.pointer) != ERROR_SUCCESS)
        return false;
    LocalMemory<ACL> extended;
    if (::SetEntriesInAclW(1, &entry, present, &extended.pointer) != ERROR_SUCCESS)
        return false;
    return ::SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                   extended.pointer, nullptr) == ERROR_SUCCESS;
}

// Whether it is a file, no link to one, and one that can be found nowhere else.
bool isOrdinary(const Handle& file) noexcept
{
    BY_HANDLE_FILE_INFORMATION found = {};
    if (::GetFileType(file.get()) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file.get(), &found) != 0 &&
        !isLink(found.dwFileAttributes) && found.nNumberOfLinks == 1)
        return true;
    ::SetLastError(ERROR_BAD_FILE_TYPE);
    return false;
}

// What SetFileInformationByHandle() takes for a renaming. Not every version of the system's headers has the flags.
struct Renaming
{
    DWORD flags;
    HANDLE folder;
    DWORD nameBytes;
    wchar_t name[1];
};

constexpr auto renamingWithFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD replaceExisting = 0x1;
constexpr DWORD posixSemantics = 0x2;
constexpr DWORD ignoreReadOnly = 0x40;

enum class Renamed { yes, no, unknownHere };

bool isUnknownRequest(DWORD error) noexcept
{
    return error == ERROR_INVALID_PARAMETER || error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED;
}

// Renames as POSIX does: the new file takes the name at once, also from one that is read meanwhile or that is
// read-only. Whoever has the old one open goes on with it. Older systems, and file systems of other kinds, cannot.
Renamed renameAsPosix(const std::wstring& source, const std::wstring& target, bool replace)
{
    const std::wstring full = fullPath(target);
    std::vector<std::byte> bytes(sizeof(Renaming) + full.size() * sizeof(wchar_t));
    Renaming renaming = {};
    renaming.flags = posixSemantics | (replace ? replaceExisting | ignoreReadOnly : 0U);
    renaming.nameBytes = static_cast<DWORD>(full.size() * sizeof(wchar_t));
    std::memcpy(bytes.data(), &renaming, sizeof renaming);
    std::memcpy(bytes.data() + offsetof(Renaming, name), full.c_str(), renaming.nameBytes + sizeof(wchar_t));
    // What is written through a handle with this flag, a name as well, lasts when the call returns.
    constexpr DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_WRITE_THROUGH;
    const Handle file(::CreateFileW(source.c_str(), DELETE, shareAll, nullptr, OPEN_EXISTING, flags, nullptr));
    if (!file)
        return Renamed::no;
    if (::SetFileInformationByHandle(file.get(), renamingWithFlags, bytes.data(), static_cast<DWORD>(bytes.size())) !=
        0)
        return Renamed::yes;
    return isUnknownRequest(::GetLastError()) ? Renamed::unknownHere : Renamed::no;
}

// A read-only target is made writable only when it is really replaced: by then nothing else was in the way.
bool renameInTheOldWay(const std::wstring& source, const std::wstring& target, bool replace)
{
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? DWORD{MOVEFILE_REPLACE_EXISTING} : DWORD{0});
    if (::MoveFileExW(source.c_str(), target.c_str(), flags) != 0)
        return true;
    const DWORD error = ::GetLastError();
    const DWORD attributes = replace ? attributesOf(target) : INVALID_FILE_ATTRIBUTES;
    const bool isReadOnly = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (error == ERROR_ACCESS_DENIED && isReadOnly && !isFolder(attributes) && clearReadOnly(target, attributes)) {
        if (::MoveFileExW(source.c_str(), target.c_str(), flags) != 0)
            return true;
        ::SetFileAttributesW(target.c_str(), attributes);
    }
    ::SetLastError(error);
    return false;
}

bool renameOnce(const std::wstring& source, const std::wstring& target, bool replace)
{
    const Renamed renamed = renameAsPosix(source, target, replace);
    return renamed == Renamed::unknownHere ? renameInTheOldWay(source, target, replace) : renamed == Renamed::yes;
}

}  // namespace

std::optional<FileStatus> fileStatus(const std::string& path) noexcept
{
    return guarded(
        [&]() -> std::optional<FileStatus> {
            // With backup semantics, folders open too. Without access rights, no other program's lock is in the way.
            const Handle file(::CreateFileW(systemPath(path).c_str(), 0, shareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
            BY_HANDLE_FILE_INFORMATION found = {};
            if (!file)
                return std::nullopt;
            // A device, such as the console, has nothing more to tell.
            if (::GetFileType(file.get()) != FILE_TYPE_DISK)
                return FileStatus();
            if (::GetFileInformationByHandle(file.get(), &found) == 0)
                return std::nullopt;
            const auto join = [](DWORD high, DWORD low) {
                return static_cast<long long>(static_cast<unsigned long long>(high) << 32U | low);
            };
            const long long ticks = join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
            return FileStatus{isFolder(found.dwFileAttributes),
                              !isFolder(found.dwFileAttributes),
                              join(found.nFileSizeHigh, found.nFileSizeLow),
                              (ticks - epoch) / ticksPerSecond,
                              static_cast<std::uint64_t>(join(found.nFileIndexHigh, found.nFileIndexLow)),
                              found.dwVolumeSerialNumber,
                              (ticks - epoch) * nanosecondsPerTick};
        },
        std::optional<FileStatus>());
}

bool nameTaken(const std::string& path) noexcept
{
    return guarded([&] { return attributesOf(systemPath(path)) != INVALID_FILE_ATTRIBUTES; }, false);
}

bool linkAt(const std::string& path) noexcept
{
    return guarded(
        [&] {
            const DWORD attributes = attributesOf(systemPath(path));
            return attributes != INVALID_FILE_ATTRIBUTES && isLink(attributes);
        },
        false);
}

std::string absolutePath(const std::string& path)
{
    const std::wstring native = systemPath(path);
    return native.empty() || isAbsolute(path) ? path : fromNativePath(fullPath(native));
}

bool createFolder(const std::string& path) noexcept
{
    return guarded(
        [&] {
            if (::CreateDirectoryW(systemPath(path).c_str(), nullptr) != 0)
                return true;
            const DWORD error = ::GetLastError();
            const auto status = fileStatus(path);
            ::SetLastError(error);
            return status && status->folder;
        },
        false);
}

bool removeEmptyFolder(const std::string& path) noexcept
{
    return guarded(
        [&] {
            const std::wstring name = systemPath(path);
            const DWORD attributes = attributesOf(name);
            return attributes != INVALID_FILE_ATTRIBUTES && isFolder(attributes) && !isLink(attributes) &&
                   ::RemoveDirectoryW(name.c_str()) != 0;
        },
        false);
}

bool createSharedFolder(const std::string& path) noexcept
{
    return guarded(
        [&] {
            const std::wstring name = systemPath(path);
            if (::CreateDirectoryW(name.c_str(), nullptr) != 0)
                return setAccessList(name);
            const auto status = fileStatus(path);
            return status && status->folder;
        },
        false);
}

bool createPrivateFolder(const std::string& path) noexcept
{
    return guarded(
        [&] {
            // The folder inherits the access list of the user's own folders.
            const std::wstring name = systemPath(path);
            if (::CreateDirectoryW(name.c_str(), nullptr) != 0)
                return true;
            const DWORD attributes = attributesOf(name);
            return attributes != INVALID_FILE_ATTRIBUTES && isFolder(attributes) && !isLink(attributes);
        },
        false);
}

bool removeFile(const std::string& path, bool overrideReadOnly) noexcept
{
    return guarded(
        [&] {
            const std::wstring name = systemPath(path);
            const DWORD attributes = attributesOf(name);
            if (attributes == INVALID_FILE_ATTRIBUTES || (isFolder(attributes) && !isLink(attributes)))
                return false;
            return removeOne(name, attributes, overrideReadOnly);
        },
        false);
}

bool removeUnheldFile(const std::string& path) noexcept
{
    return guarded(
        [&] {
            const std::wstring name = systemPath(path);
            const DWORD attributes = attributesOf(name);
            if (attributes == INVALID_FILE_ATTRIBUTES || isFolder(attributes) || isLink(attributes))
                return false;
            // Fails for a file that somebody has open, since it would be shared with nobody.
            const Handle file(::CreateFileW(name.c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
            return static_cast<bool>(file);
        },
        false);
}

bool linkFile(const std::string& file, const std::string& secondName) noexcept
{
    return guarded(
        [&] { return ::CreateHardLinkW(systemPath(secondName).c_str(), systemPath(file).c_str(), nullptr) != 0; },
        false);
}

MoveResult move(const std::string& from, const std::string& to, bool replace) noexcept
{
    return guarded(
        [&] {
            const std::wstring source = systemPath(from);
            const std::wstring target = systemPath(to);
            const DWORD attributes = attributesOf(source);
            if (attributes == INVALID_FILE_ATTRIBUTES || target.empty())
                return MoveResult::failed;
            const bool mayReplace = replace && !isFolder(attributes);
            // A folder in the way is refused for good, in the same words as a file that is read for the moment.
            const DWORD there = attributesOf(target);
            if (there != INVALID_FILE_ATTRIBUTES && isFolder(there) && mayReplace) {
                ::SetLastError(ERROR_ACCESS_DENIED);
                return MoveResult::failed;
            }
            if (patiently(readAttempts, [&] { return renameOnce(source, target, mayReplace); }))
                return MoveResult::moved;
            return ::GetLastError() == ERROR_NOT_SAME_DEVICE ? MoveResult::otherVolume : MoveResult::failed;
        },
        MoveResult::failed);
}

void syncFolder(const std::string&) noexcept
{
    // Nothing to do: move() has already made the names last.
}

std::optional<std::uint64_t> freeSpace(const std::string& folder) noexcept
{
    return guarded(
        [&]() -> std::optional<std::uint64_t> {
            ULARGE_INTEGER available = {};
            if (::GetDiskFreeSpaceExW(systemPath(folder).c_str(), &available, nullptr, nullptr) == 0)
                return std::nullopt;
            return available.QuadPart;
        },
        std::optional<std::uint64_t>());
}

bool canChangeFolder(const std::string& folder) noexcept
{
    return guarded(
        [&] {
            const Handle opened(::CreateFileW(systemPath(folder).c_str(), FILE_ADD_FILE, shareAll, nullptr,
                                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
            BY_HANDLE_FILE_INFORMATION found = {};
            return opened && ::GetFileInformationByHandle(opened.get(), &found) != 0 &&
                   isFolder(found.dwFileAttributes);
        },
        false);
}

bool canWriteFile(const std::string& path) noexcept
{
    const Handle file(openFile(path, GENERIC_WRITE, shareAll, OPEN_EXISTING));
    return static_cast<bool>(file);
}

bool canReplaceFile(const std::string& folder, const std::string&) noexcept
{
    return canChangeFolder(folder);
}

bool isWriteLocked(const std::string& path) noexcept
{
    // Does not share writing, so it fails when somebody has the file open for writing.
    const Handle file(openFile(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING));
    return !file && ::GetLastError() == ERROR_SHARING_VIOLATION;
}

bool makeWritable(const std::string& path) noexcept
{
    return guarded(
        [&] {
            const std::wstring name = systemPath(path);
            const DWORD attributes = attributesOf(name);
            return attributes != INVALID_FILE_ATTRIBUTES && clearReadOnly(name, attributes);
        },
        false);
}

bool grantEveryone(const std::string& path) noexcept
{
    return guarded([&] { return setAccessList(systemPath(path)); }, false);
}

bool appendText(const std::string& path, std::string_view text)
{
    std::string lines;
    lines.reserve(text.size() + text.size() / 8);
    for (const char character : text)
        lines.append(character == '\n' ? "\r\n" : std::string(1, character));
    const Handle file(::CreateFileW(systemPath(path).c_str(), FILE_APPEND_DATA, shareAll, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    DWORD written = 0;
    return file && isOrdinary(file) && lines.size() <= requestLimit &&
           ::WriteFile(file.get(), lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr) != 0 &&
           written == lines.size();
}

}  // namespace Velk::Platform
