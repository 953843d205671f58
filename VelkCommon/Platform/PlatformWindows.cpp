#include <VelkCommon/Platform/Platform.h>

#include <VelkCommon/Files/fileString.h>

// The order of the system's headers matters: windows.h comes first.
#include <windows.h>

#include <aclapi.h>
#include <bcrypt.h>

#include <algorithm>
#include <cwchar>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace Velk::Platform {
namespace {

constexpr std::size_t copyBlock = std::size_t{1} << 20;
// A single request to the system must fit into 32 bits.
constexpr std::size_t requestLimit = std::size_t{1} << 30;
// Folders may be 12 characters shorter than the limit for files of 259.
constexpr std::size_t longestPlainPath = 247;
constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::wstring_view longPrefix = L"\\\\?\\";
constexpr std::wstring_view longShare = L"\\\\?\\UNC\\";
// Programs that look at every new file hold it for a moment.
constexpr int busyAttempts = 10;
constexpr DWORD busyPause = 20;
// 1601-01-01 to 1970-01-01, in units of 100 ns.
constexpr long long epoch = 116444736000000000LL;
constexpr long long ticksPerSecond = 10000000LL;

// The path as system calls take it; one with a zero byte would name another file, so it becomes the
// empty path, which names nothing.
std::wstring systemPath(const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        return {};
    return fileString(path).toNativeString();
}

// What `operation` returns; `failure` when it throws (for want of memory).
template <typename Operation, typename Result>
Result guarded(Operation operation, Result failure) noexcept
{
    try {
        return operation();
    } catch (...) {
        return failure;
    }
}

class Handle
{
public:
    explicit Handle(HANDLE handle) noexcept : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle()
    {
        const DWORD error = ::GetLastError();
        if (*this)
            ::CloseHandle(handle_);
        ::SetLastError(error);
    }

    HANDLE get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_;
};

HANDLE handleOf(std::intptr_t handle) noexcept
{
    return reinterpret_cast<HANDLE>(handle);
}

std::intptr_t numberOf(HANDLE handle) noexcept
{
    return reinterpret_cast<std::intptr_t>(handle);
}

// Opens a file, never a folder: without FILE_FLAG_BACKUP_SEMANTICS the system refuses those itself.
HANDLE openFile(const std::string& path, DWORD access, DWORD share, DWORD creation) noexcept
{
    return guarded(
        [&] {
            return ::CreateFileW(systemPath(path).c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL,
                                 nullptr);
        },
        INVALID_HANDLE_VALUE);
}

// As openFile(), but only what has an end: a device or a pipe must not keep a reader busy for ever.
HANDLE openForReading(const std::string& path, DWORD share) noexcept
{
    const HANDLE file = openFile(path, GENERIC_READ, share, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE || ::GetFileType(file) == FILE_TYPE_DISK)
        return file;
    ::CloseHandle(file);
    ::SetLastError(ERROR_BAD_FILE_TYPE);
    return INVALID_HANDLE_VALUE;
}

bool isBusy(DWORD error) noexcept
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED || error == ERROR_LOCK_VIOLATION;
}

// Tries again while another program looks at the file.
template <typename Call>
bool patiently(Call call)
{
    for (int attempt = 1;; ++attempt) {
        if (call())
            return true;
        if (attempt == busyAttempts || !isBusy(::GetLastError()))
            return false;
        ::Sleep(busyPause);
    }
}

DWORD attributesOf(const std::wstring& path) noexcept
{
    return path.empty() ? INVALID_FILE_ATTRIBUTES : ::GetFileAttributesW(path.c_str());
}

bool isFolder(DWORD attributes) noexcept
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool isLink(DWORD attributes) noexcept
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool clearReadOnly(const std::wstring& path, DWORD attributes) noexcept
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return true;
    return ::SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)) != 0;
}

// Deletes one file, one link or one empty folder.
bool removeOne(const std::wstring& path, DWORD attributes, bool overrideReadOnly)
{
    if (overrideReadOnly && !clearReadOnly(path, attributes))
        return false;
    return patiently(
        [&] { return (isFolder(attributes) ? ::RemoveDirectoryW(path.c_str()) : ::DeleteFileW(path.c_str())) != 0; });
}

std::string toUtf8(std::wstring_view text)
{
    return fileString::fromNative(text).utf8();
}

// ---- Path text -----------------------------------------------------------------------------------

constexpr bool isWideSeparator(wchar_t character) noexcept
{
    return character == L'/' || character == L'\\';
}

bool isDriveLetter(char letter) noexcept
{
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

// Behind the next piece of `path` from `begin` on and the separators that follow it.
std::size_t behindPiece(std::string_view path, std::size_t begin) noexcept
{
    while (begin < path.size() && !isSeparator(path[begin]))
        ++begin;
    while (begin < path.size() && isSeparator(path[begin]))
        ++begin;
    return begin;
}

std::wstring toUtf16(std::u32string_view text)
{
    constexpr char32_t firstSupplementary = 0x10000;
    std::wstring wide;
    wide.reserve(text.size());
    for (const char32_t point : text)
        if (point < firstSupplementary) {
            wide += static_cast<wchar_t>(point);
        } else {
            const char32_t rest = point - firstSupplementary;
            wide += static_cast<wchar_t>(0xD800U + (rest >> 10U));
            wide += static_cast<wchar_t>(0xDC00U + (rest & 0x3FFU));
        }
    return wide;
}

// The pieces of a path without "." and with ".." taken back, joined; behind the long-path prefix the
// system does neither.
std::wstring resolved(std::wstring_view pieces)
{
    std::vector<std::wstring_view> kept;
    while (!pieces.empty()) {
        const std::size_t end = std::min(pieces.find(L'\\'), pieces.size());
        const std::wstring_view piece = pieces.substr(0, end);
        pieces.remove_prefix(std::min(end + 1, pieces.size()));
        if (piece == L"..") {
            if (!kept.empty())
                kept.pop_back();
        } else if (!piece.empty() && piece != L".") {
            kept.push_back(piece);
        }
    }
    std::wstring joined;
    for (const std::wstring_view piece : kept)
        joined.append(joined.empty() ? L"" : L"\\").append(piece);
    return joined;
}

// ---- Access lists --------------------------------------------------------------------------------

template <typename T>
struct LocalMemory
{
    T* pointer = nullptr;
    LocalMemory() = default;
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;
    ~LocalMemory() { ::LocalFree(pointer); }
};

bool setAccessList(const std::wstring& path)
{
    // By number: the group's name is translated.
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

std::string environment(const wchar_t* name)
{
    std::wstring value(std::numeric_limits<short>::max(), L'\0');
    const DWORD size = ::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
    return size < value.size() ? toUtf8(value.substr(0, size)) : std::string();
}

}  // namespace

// ---- The process ---------------------------------------------------------------------------------

std::string lastErrorText()
{
    const DWORD error = ::GetLastError();
    LocalMemory<wchar_t> buffer;
    const DWORD size =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                         nullptr, error, 0, reinterpret_cast<LPWSTR>(&buffer.pointer), 0, nullptr);
    std::wstring_view text(buffer.pointer, size);
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r' || text.back() == L' '))
        text.remove_suffix(1);
    return text.empty() ? "error " + std::to_string(error) : toUtf8(text);
}

bool debuggerPresent()
{
    return ::IsDebuggerPresent() != 0;
}

void debugBreak()
{
    ::DebugBreak();
}

void writeToStandardError(std::string_view text) noexcept
{
    const HANDLE handle = ::GetStdHandle(STD_ERROR_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE)
        return;
    while (!text.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(text.size(), requestLimit));
        if (::WriteFile(handle, text.data(), size, &written, nullptr) == 0 || written == 0)
            return;
        text.remove_prefix(written);
    }
}

std::uint32_t currentThreadId() noexcept
{
    return ::GetCurrentThreadId();
}

bool fillRandom(void* bytes, std::size_t size) noexcept
{
    return ::BCryptGenRandom(nullptr, static_cast<PUCHAR>(bytes), static_cast<ULONG>(size),
                             BCRYPT_USE_SYSTEM_PREFERRED_RNG) == 0;
}

// ---- Path text -----------------------------------------------------------------------------------

std::size_t rootLength(std::string_view path) noexcept
{
    if (path.size() >= 2 && isDriveLetter(path[0]) && path[1] == ':')
        return path.size() > 2 && isSeparator(path[2]) ? 3 : 2;
    if (path.size() > 2 && isSeparator(path[0]) && isSeparator(path[1]) && !isSeparator(path[2]))
        return behindPiece(path, behindPiece(path, 2));
    return behindPiece(path.substr(0, path.find_first_not_of("/\\")), 0);
}

bool isAbsolute(std::string_view path) noexcept
{
    const std::size_t root = rootLength(path);
    return root >= 3 && (path[1] == ':' || isSeparator(path[1]));
}

std::wstring toNativePath(std::u32string_view path)
{
    std::wstring wide = toUtf16(path);
    if (wide.starts_with(longPrefix))
        return wide;
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    if (wide.size() <= longestPlainPath)
        return wide;
    if (wide.starts_with(L"\\\\"))
        return std::wstring(longShare) + resolved(std::wstring_view(wide).substr(2));
    if (wide[1] == L':' && wide[2] == L'\\')
        return std::wstring(longPrefix) + wide.substr(0, 3) + resolved(std::wstring_view(wide).substr(3));
    return wide;
}

std::u32string fromNativePath(std::wstring_view native)
{
    std::u32string text;
    if (native.starts_with(longShare)) {
        text = U"\\\\";
        native.remove_prefix(longShare.size());
    } else if (native.starts_with(longPrefix)) {
        native.remove_prefix(longPrefix.size());
    }
    for (std::size_t i = 0; i < native.size(); ++i) {
        const char32_t unit = native[i];
        const char32_t next = i + 1 < native.size() ? native[i + 1] : U'\0';
        if (unit >= 0xD800 && unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            text += 0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00);
            ++i;
        } else {
            text += unit;
        }
    }
    return text;
}

std::string userDataFolder()
{
    std::string folder = environment(L"LOCALAPPDATA");
    return folder.empty() ? temporaryFolder() : folder;
}

std::string temporaryFolder()
{
    std::wstring folder(MAX_PATH + 2, L'\0');
    const DWORD size = ::GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    if (size == 0 || size >= folder.size())
        return "C:\\Windows\\Temp";
    return toUtf8(folder.substr(0, size));
}

std::string userFolderName()
{
    // The temporary folder is already this user's.
    return "velk";
}

// ---- Files and folders by path -------------------------------------------------------------------

std::optional<FileStatus> fileStatus(const std::string& path) noexcept
{
    return guarded(
        [&]() -> std::optional<FileStatus> {
            // With backup semantics folders open too; without access rights nothing is in the way.
            const Handle file(::CreateFileW(systemPath(path).c_str(), 0, shareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
            BY_HANDLE_FILE_INFORMATION found = {};
            if (!file || ::GetFileInformationByHandle(file.get(), &found) == 0)
                return std::nullopt;
            const auto join = [](DWORD high, DWORD low) {
                return static_cast<long long>(static_cast<unsigned long long>(high) << 32U | low);
            };
            const long long ticks = join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
            return FileStatus{isFolder(found.dwFileAttributes), join(found.nFileSizeHigh, found.nFileSizeLow),
                              (ticks - epoch) / ticksPerSecond};
        },
        std::optional<FileStatus>());
}

bool nameTaken(const std::string& path) noexcept
{
    return guarded([&] { return attributesOf(systemPath(path)) != INVALID_FILE_ATTRIBUTES; }, false);
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
            // It inherits the access list of the user's own folders.
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

// Any path in its long form, as below a folder the paths may become too long for the plain one.
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
    if (attributes == INVALID_FILE_ATTRIBUTES || !isAbsolute(path))
        return false;
    if (isLink(attributes))
        return removeOne(name, attributes, overrideReadOnly);
    return isFolder(attributes) && TreeRemover(overrideReadOnly).remove(withLongPrefix(name));
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
            const DWORD flags = MOVEFILE_WRITE_THROUGH | (mayReplace ? DWORD{MOVEFILE_REPLACE_EXISTING} : DWORD{0});
            if (patiently([&] { return ::MoveFileExW(source.c_str(), target.c_str(), flags) != 0; }))
                return MoveResult::moved;
            return ::GetLastError() == ERROR_NOT_SAME_DEVICE ? MoveResult::otherVolume : MoveResult::failed;
        },
        MoveResult::failed);
}

void syncFolder(const std::string&) noexcept
{
    // MOVEFILE_WRITE_THROUGH has done it.
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

bool isWriteLocked(const std::string& path) noexcept
{
    // Does not share writing, so it fails where somebody has the file open for that.
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
    const Handle file(openFile(path, FILE_APPEND_DATA, shareAll, OPEN_ALWAYS));
    DWORD written = 0;
    return file && lines.size() <= requestLimit &&
           ::WriteFile(file.get(), lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr) != 0 &&
           written == lines.size();
}

// ---- An open file --------------------------------------------------------------------------------

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

File& File::operator=(File&& other) noexcept
{
    std::swap(handle_, other.handle_);
    return *this;
}

File::~File()
{
    if (isOpen())
        close();
}

File File::open(const std::string& path, Mode mode) noexcept
{
    if (mode == Mode::read)
        return File(numberOf(openForReading(path, shareAll)));
    return File(numberOf(openFile(path, GENERIC_READ | GENERIC_WRITE, shareAll, CREATE_NEW)));
}

File::LockResult File::openLocked(const std::string& path, Lock lock) noexcept
{
    File file(numberOf(lock == Lock::shared ? openForReading(path, FILE_SHARE_READ)
                                            : openFile(path, GENERIC_WRITE, 0, OPEN_ALWAYS)));
    if (!file.isOpen())
        return ::GetLastError() == ERROR_SHARING_VIOLATION ? LockResult::held : LockResult::failed;
    *this = std::move(file);
    return LockResult::locked;
}

bool File::close() noexcept
{
    return ::CloseHandle(handleOf(std::exchange(handle_, closed))) != 0;
}

long long File::read(char* bytes, std::size_t size) noexcept
{
    std::size_t total = 0;
    while (total < size) {
        DWORD got = 0;
        const auto request = static_cast<DWORD>(std::min(size - total, requestLimit));
        if (::ReadFile(handleOf(handle_), bytes + total, request, &got, nullptr) == 0)
            return -1;
        if (got == 0)
            break;
        total += got;
    }
    return static_cast<long long>(total);
}

bool File::write(const char* bytes, std::size_t size) noexcept
{
    while (size > 0) {
        DWORD written = 0;
        const auto request = static_cast<DWORD>(std::min(size, requestLimit));
        if (::WriteFile(handleOf(handle_), bytes, request, &written, nullptr) == 0 || written == 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

bool File::seek(long long offset) noexcept
{
    LARGE_INTEGER distance = {};
    distance.QuadPart = offset;
    return ::SetFilePointerEx(handleOf(handle_), distance, nullptr, FILE_BEGIN) != 0;
}

long long File::size() const noexcept
{
    LARGE_INTEGER size = {};
    return ::GetFileSizeEx(handleOf(handle_), &size) != 0 ? size.QuadPart : -1;
}

bool File::truncate() noexcept
{
    if (::GetFileType(handleOf(handle_)) != FILE_TYPE_DISK)
        return true;
    return seek(0) && ::SetEndOfFile(handleOf(handle_)) != 0;
}

bool File::sync() noexcept
{
    // What was opened for reading only has nothing to write.
    return ::FlushFileBuffers(handleOf(handle_)) != 0 || ::GetLastError() == ERROR_ACCESS_DENIED;
}

void File::expectSequentialReading() noexcept
{
    // The system sees it for itself.
}

bool File::copyFrom(File& source)
{
    std::vector<char> block(copyBlock);
    for (;;) {
        const long long got = source.read(block.data(), block.size());
        if (got <= 0)
            return got == 0;
        if (!write(block.data(), static_cast<std::size_t>(got)))
            return false;
    }
}

bool File::copyPermissionsFrom(const std::string& source) noexcept
{
    // A file has the access list of its folder.
    return nameTaken(source);
}

}  // namespace Velk::Platform
