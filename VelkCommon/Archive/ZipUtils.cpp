#include <VelkCommon/Archive/ZipUtils.h>

#include <VelkCommon/Archive/detail/ZipArchive.h>
#include <VelkCommon/Archive/detail/ZipEntryReader.h>
#include <VelkCommon/Archive/detail/ZipWriter.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Text/StringConvert.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <new>
#include <optional>
#include <utility>

namespace Platform = Velk::Platform;

using Velk::detail::ZipArchive;
using Velk::detail::ZipEntry;
using Velk::detail::ZipEntryReader;
using Velk::detail::ZipWriter;

/// The entry that the walk has come to.
class ZipUtils::ZipRawDataInfo
{
public:
    explicit ZipRawDataInfo(const ZipEntry& entry) noexcept : entry_(entry) {}

    const ZipEntry& entry() const noexcept { return entry_; }

private:
    const ZipEntry& entry_;
};

/// A walk: the archive that it reads, and those that it writes.
class ZipUtils::ZipHandles::unzArchiveHandle
{
public:
    unzArchiveHandle(fileString path, std::shared_ptr<ZipArchive> archive)
        : path_(std::move(path)), archive_(std::move(archive)), outer_(std::exchange(innermost, this))
    {}
    ~unzArchiveHandle() { innermost = outer_; }
    unzArchiveHandle(const unzArchiveHandle&) = delete;
    unzArchiveHandle& operator=(const unzArchiveHandle&) = delete;

    ZipArchive& archive() const noexcept { return *archive_; }

    /// The archive at `path` when a walk of this thread has it open for reading; null otherwise.
    static std::shared_ptr<ZipArchive> findArchive(const fileString& path);
    /// The writer of a walk of this thread for `path`, even if it has failed; null when there is none.
    static ZipWriter* findWriter(const fileString& path);

    /// This walk's writer for `path`, which is made when there is none yet. Null when the archive must not be
    /// or cannot be written.
    ZipWriter* writer(const fileString& path, bool create) const;
    /// Completes the written archives and puts them in place. False when any of them is lost.
    bool finish() const;

private:
    // The innermost walk of the thread. Each walk runs inside the perEntry callback of its outer_.
    static thread_local const unzArchiveHandle* innermost;

    fileString path_;
    std::shared_ptr<ZipArchive> archive_;
    const unzArchiveHandle* outer_;
    // An archive that must not be replaced is remembered as null, so that it is examined only once.
    mutable std::map<fileString, std::unique_ptr<ZipWriter>> writers_;
};

thread_local const ZipUtils::ZipHandles::unzArchiveHandle* ZipUtils::ZipHandles::unzArchiveHandle::innermost = nullptr;

namespace {

using Handle = ZipUtils::ZipHandles::unzArchiveHandle;

bool isFolder(const fileString& path)
{
    const auto status = Platform::fileStatus(path.utf8());
    return status && status->folder;
}

bool canBeReplaced(const fileString& path)
{
    const fileString folder = path.parentPathWithSeparator();
    return FileUtils::canWriteFile(path) && Platform::canChangeFolder(folder.empty() ? "." : folder.utf8());
}

/// An entry found by its combined path, with its archive.
struct Addressed
{
    std::shared_ptr<ZipArchive> archive;
    const ZipEntry* entry = nullptr;
};

std::optional<Addressed> locate(const fileString& combined)
{
    const std::string& text = combined.utf8();
    const std::size_t end = text.find('\0');
    if (end == std::string::npos)
        return std::nullopt;
    const fileString path(text.substr(0, end));
    Addressed found;
    // A walk already has its archive open, so it need not be opened again for each entry.
    found.archive = Handle::findArchive(path);
    if (!found.archive)
        found.archive = ZipArchive::open(path);
    if (found.archive)
        found.entry = found.archive->find(fileString(text.substr(end + 1)));
    return found.entry != nullptr ? std::optional(std::move(found)) : std::nullopt;
}

}  // namespace

// ---- The walk ------------------------------------------------------------------------------------

std::shared_ptr<ZipArchive> Handle::findArchive(const fileString& path)
{
    for (const Handle* walk = innermost; walk != nullptr; walk = walk->outer_)
        if (walk->path_ == path)
            return walk->archive_;
    return nullptr;
}

ZipWriter* Handle::findWriter(const fileString& path)
{
    for (const Handle* walk = innermost; walk != nullptr; walk = walk->outer_)
        if (const auto found = walk->writers_.find(path); found != walk->writers_.end())
            return found->second.get();
    return nullptr;
}

ZipWriter* Handle::writer(const fileString& path, bool create) const
{
    if (const auto open = writers_.find(path); open != writers_.end())
        return open->second.get();
    auto old = ZipArchive::open(path);
    if (!old && (!create || isFolder(path)))
        return nullptr;
    if (old && !canBeReplaced(path))
        return writers_[path].get();
    return writers_.emplace(path, std::make_unique<ZipWriter>(path, std::move(old))).first->second.get();
}

bool Handle::finish() const
{
    bool complete = true;
    for (const auto& [path, writer] : writers_)
        if (writer && writer->changed())
            complete = writer->finish() && complete;
    // One of them may be put in the place of the archive that was read, and not every system replaces
    // an open file.
    archive_->close();
    for (const auto& [path, writer] : writers_)
        if (writer && writer->changed())
            complete = writer->commit() && complete;
    return complete;
}

// ---- The operations ------------------------------------------------------------------------------

std::u32string ZipUtils::getExtension()
{
    return StringConvert::toUnicodeFromUtf8(extension);
}

std::u32string ZipUtils::getDelimiter()
{
    return std::u32string(1, U'\0');
}

unsigned long long ZipUtils::getSizeOfArchive(const fileString& archive)
{
    const auto opened = ZipArchive::open(archive);
    return opened ? opened->directory().entries().size() : 0;
}

std::vector<fileString> ZipUtils::getFilenamesInArchive(const fileString& archive)
{
    std::vector<fileString> names;
    if (const auto opened = ZipArchive::open(archive))
        for (const ZipEntry& entry : opened->directory().entries())
            names.push_back(opened->directory().name(entry));
    return names;
}

std::vector<fileString> ZipUtils::getFilesDataInArchive(
    const fileString& archive,
    std::function<bool(const std::u32string&, const ZipHandles::unzArchiveHandle&, ZipRawDataInfo*)> perEntry,
    const std::function<bool()>& stop)
{
    const auto visit = std::move(perEntry);
    std::vector<fileString> visited;
    const std::shared_ptr<ZipArchive> opened = ZipArchive::open(archive);
    if (!opened)
        return visited;
    const Handle walk(archive, opened);
    for (const ZipEntry& entry : opened->directory().entries()) {
        if (stop && stop())
            break;
        ZipRawDataInfo data(entry);
        visited.push_back(opened->directory().name(entry));
        if (!visit(visited.back().unicodeString(), walk, &data))
            break;
    }
    if (!walk.finish())
        visited.clear();
    return visited;
}

bool ZipUtils::canAddToArchive(const fileString& archive)
{
    if (const ZipWriter* const writer = Handle::findWriter(archive))
        return writer->good();
    return canBeReplaced(archive) && ZipArchive::open(archive) != nullptr;
}

bool ZipUtils::writeFileToArchiveRaw(const fileString& archive, const fileString& entryName,
                                     const ZipHandles::unzArchiveHandle& handle, bool create, ZipRawDataInfo* entry)
{
    ZipWriter* const writer = entry != nullptr ? handle.writer(archive, create) : nullptr;
    return writer != nullptr && writer->add(handle.archive(), entry->entry(), entryName);
}

bool ZipUtils::canCopyRaw(const ZipHandles::unzArchiveHandle& handle, const ZipRawDataInfo* entry)
{
    return entry != nullptr && handle.archive().extent(entry->entry()).has_value();
}

void ZipUtils::writeFileDataFromArchive(const fileString& combined,
                                        std::function<void(std::vector<unsigned char>&)> sink)
{
    const auto take = std::move(sink);
    const auto found = locate(combined);
    if (!found)
        return;
    if (std::max(found->entry->size, found->entry->compressedSize) > wholeEntryLimit)
        throw std::bad_alloc();
    if (auto bytes = Velk::detail::readWholeEntry(*found->archive, *found->entry))
        take(*bytes);
}

// ---- Reading in blocks ---------------------------------------------------------------------------

namespace {

// Data is unpacked in pieces that fit the processor's cache, and then appended to the block. The block grows with
// the data that really comes, because the size that an entry declares may be a lie.
constexpr std::size_t pieceSize = std::size_t{1} << 17;
constexpr std::size_t firstReserve = std::size_t{1} << 20;

}  // namespace

struct ZipUtils::ZipInputStream::Source
{
    explicit Source(const Addressed& found) : reader(found.archive, *found.entry), piece(pieceSize) {}

    ZipEntryReader reader;
    std::vector<unsigned char> piece;
};

ZipUtils::ZipInputStream::ZipInputStream(const fileString& combined)
{
    if (const auto found = locate(combined))
        source_ = std::make_unique<Source>(*found);
}

ZipUtils::ZipInputStream::~ZipInputStream() = default;

bool ZipUtils::ZipInputStream::isFileOpen() const
{
    return source_ && !source_->reader.failed();
}

std::vector<unsigned char> ZipUtils::ZipInputStream::readArchivedFile(int maxBytes)
{
    std::vector<unsigned char> block;
    if (maxBytes <= 0 || reachedEOF())
        return block;
    ZipEntryReader& reader = source_->reader;
    std::vector<unsigned char>& piece = source_->piece;
    const auto size = static_cast<std::size_t>(std::min(static_cast<std::uint64_t>(maxBytes), reader.remaining()));
    block.reserve(std::min(size, firstReserve));
    while (block.size() < size) {
        const std::size_t got = reader.read(piece.data(), std::min(piece.size(), size - block.size()));
        if (got == 0)
            break;
        block.insert(block.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    }
    return block;
}

bool ZipUtils::ZipInputStream::reachedEOF() const
{
    return !source_ || source_->reader.failed() || source_->reader.whole();
}

bool ZipUtils::ZipInputStream::isWhole() const
{
    return source_ && source_->reader.whole();
}
