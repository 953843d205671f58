#include <VelkLibrary/LibraryImport.h>

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileSearch.h>
#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/detail/DiskReserve.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/xl8.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <functional>
#include <new>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using OptionalPaths = std::pair<std::optional<fileString>, std::optional<fileString>>;
using Handle = ZipUtils::ZipHandles::unzArchiveHandle;

// Bytes to read at once from a catalog file that is too large for memory: few enough that they are still in the
// processor's second-level cache when the system copies them.
constexpr int blockSize = 1 << 17;
constexpr double allUnits = 100;

bool neverStop()
{
    return false;
}

void openSubRange(ProgressSubject& progress, const fileString& archive)
{
    progress.openSubRange(ZipUtils::getSizeOfArchive(archive), allUnits);
}

void advance(ProgressSubject& progress, const std::u32string& entryName)
{
    std::u32string label = xl8(U"Copying: %1%");
    StringUtils::replaceAll(label, U"%1%", entryName);
    progress.increment(label, {});
}

fileString combinedPath(const fileString& archive, const fileString& entryName)
{
    return archive + fileString(ZipUtils::getDelimiter()) + entryName;
}

// ---- Unpacking -----------------------------------------------------------------------------------

fileString outputPath(const fileString& archive, bool useTempNames, const char* extension)
{
    if (useTempNames)
        return fileString(archive).generateAsTempName(fileString(extension));
    return archive.pathAndName() + fileString(extension);
}

/// One unpacking: where its files go, and what the result is.
class Unpacking
{
public:
    Unpacking(const fileString& archive, bool useTempNames, ProgressSubject* progress)
        : archive_(archive),
          databasePath_(outputPath(archive, useTempNames, Library::extensions::database)),
          otherFilesPath_(outputPath(archive, useTempNames, Library::extensions::referencedFiles)),
          progress_(progress)
    {}

    OptionalPaths run()
    {
        // An archive that is unpacked over itself would be gone before it is read.
        if (databasePath_ == archive_)
            return {};
        FileReaper databaseReaper(databasePath_);
        FileReaper otherFilesReaper(otherFilesPath_);
        if (otherFilesPath_ == archive_)
            otherFilesReaper.cancel();
        if (progress_ != nullptr)
            openSubRange(*progress_, archive_);
        const auto visited = ZipUtils::getFilesDataInArchive(
            archive_,
            [this](const std::u32string& name, const Handle& handle, ZipUtils::ZipRawDataInfo* entry) {
                return visit(name, handle, entry);
            },
            &neverStop);
        // An empty list of names means that the archive of the other files was not completed.
        if (visited.empty())
            result_.second.reset();
        if (cancelled_)
            result_ = {};
        if (result_.first)
            databaseReaper.cancel();
        if (result_.second)
            otherFilesReaper.cancel();
        return result_;
    }

private:
    bool visit(const std::u32string& name, const Handle& handle, ZipUtils::ZipRawDataInfo* entry)
    {
        const fileString entryName(name);
        if (progress_ != nullptr) {
            cancelled_ = progress_->isCancelled();
            if (cancelled_)
                return false;
            advance(*progress_, name);
        }
        if (entryName.hasExtension(Library::extensions::database))
            extractDatabase(entryName);
        else if (copyEntry(entryName, handle, entry))
            result_.second = otherFilesPath_;
        return true;
    }

    bool copyEntry(const fileString& entryName, const Handle& handle, ZipUtils::ZipRawDataInfo* entry) const
    {
        const bool added = ZipUtils::canAddToArchive(otherFilesPath_) &&
                           ZipUtils::writeFileToArchiveRaw(otherFilesPath_, entryName, handle, false, entry);
        return added || ZipUtils::writeFileToArchiveRaw(otherFilesPath_, entryName, handle, true, entry);
    }

    void extractDatabase(const fileString& entryName)
    {
        result_.first.reset();
        LockingFStream stream(databasePath_, LockingFStream::out | LockingFStream::binary);
        const bool whole = writeDatabase(combinedPath(archive_, entryName), stream);
        stream.close();
        if (whole && stream.good())
            result_.first = databasePath_;
    }

    // Whether the whole entry was read. Whether it was also written is in the stream's state.
    bool writeDatabase(const fileString& combined, LockingFStream& stream) const
    {
        try {
            bool whole = false;
            ZipUtils::writeFileDataFromArchive(combined, [&](std::vector<unsigned char>& bytes) {
                append(stream, bytes);
                whole = true;
            });
            return whole;
        } catch (const std::bad_alloc&) {
            return writeDatabaseInBlocks(combined, stream);
        }
    }

    bool writeDatabaseInBlocks(const fileString& combined, LockingFStream& stream) const
    {
        ZipUtils::ZipInputStream entry(combined);
        while (entry.isFileOpen() && !entry.reachedEOF() && stream.good()) {
            const std::vector<unsigned char> block = entry.readArchivedFile(blockSize);
            if (!block.empty())
                append(stream, block);
        }
        return entry.isWhole();
    }

    // Fails before the disk is full, to leave some of it to others.
    void append(LockingFStream& stream, const std::vector<unsigned char>& bytes) const
    {
        if (bytes.size() <= Velk::detail::roomOnDisk(databasePath_))
            stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        else
            stream.setstate(std::ios::failbit);
    }

    fileString archive_;
    fileString databasePath_;
    fileString otherFilesPath_;
    ProgressSubject* progress_;
    OptionalPaths result_;
    bool cancelled_ = false;
};

// ---- Merging -------------------------------------------------------------------------------------

std::set<fileString> namesIn(const fileString& archive)
{
    const std::vector<fileString> names = ZipUtils::getFilenamesInArchive(archive);
    return {names.begin(), names.end()};
}

using CopyEntry = std::function<bool(const fileString& name, const Handle& handle, ZipUtils::ZipRawDataInfo* entry)>;

// Copies the entries of `from` with `copy`, except those named in `skip`, until `copy` fails.
bool copyArchivedFile(const fileString& from, ProgressSubject& progress, const std::set<fileString>& skip,
                      const CopyEntry& copy)
{
    openSubRange(progress, from);
    bool result = true;
    bool copied = false;
    const auto visited = ZipUtils::getFilesDataInArchive(
        from,
        [&](const std::u32string& name, const Handle& handle, ZipUtils::ZipRawDataInfo* entry) {
            const fileString entryName(name);
            advance(progress, name);
            if (skip.count(entryName) > 0)
                return true;
            result = copy(entryName, handle, entry);
            copied = copied || result;
            return result;
        },
        &neverStop);
    // An empty list of names means that what was copied is lost.
    return result && !(copied && visited.empty());
}

// The merged archive begins as a copy of the destination, so it already holds the destination's entries. They
// need not be copied again; it is enough that they can be.
bool merge(const fileString& source, const fileString& destination, ProgressSubject& progress)
{
    fileString merged = destination;
    merged.generateAsTempName(fileString(Library::extensions::referencedFiles));
    const FileReaper reaper(merged);
    if (!FileUtils::copyFile(destination, merged, true))
        return false;
    const auto check = [](const fileString&, const Handle& handle, const ZipUtils::ZipRawDataInfo* entry) {
        return ZipUtils::canCopyRaw(handle, entry);
    };
    const auto add = [&](const fileString& name, const Handle& handle, ZipUtils::ZipRawDataInfo* entry) {
        return ZipUtils::writeFileToArchiveRaw(merged, name, handle, false, entry);
    };
    if (!copyArchivedFile(destination, progress, namesIn(source), check))
        return false;
    // Names that could not be read look like none, and the source's entries would replace those of the destination.
    const std::set<fileString> present = namesIn(merged);
    return (!present.empty() || ZipUtils::getSizeOfArchive(merged) == 0) &&
           copyArchivedFile(source, progress, present, add) && FileUtils::moveFile(merged, destination, true);
}

bool putInPlace(const fileString& source, const fileString& destination, ProgressSubject* progress)
{
    FileUtils::createDirectoriesWithPerm(destination.parentPath());
    if (!FileUtils::pathExists(destination))
        return FileUtils::copyFile(source, destination, false);
    ProgressSubject unwatched;
    return merge(source, destination, progress != nullptr ? *progress : unwatched);
}

}  // namespace

namespace LibraryImport {

OptionalPaths unpack(const fileString& archive, bool useTempNames, std::shared_ptr<ProgressSubject> progress)
{
    const auto watched = std::move(progress);
    if (!FileUtils::pathExists(archive))
        return {};
    return Unpacking(archive, useTempNames, watched.get()).run();
}

OptionalPaths unpackArchivedLibrary(const fileString& source, std::shared_ptr<ProgressSubject> progress)
{
    const std::string location = StringConvert::toWin1252(source.unicodeString());
    if (!Curl::downloadable(location))
        return unpack(source, true, std::move(progress));
    const fileString downloaded = Curl::get().download(location);
    if (downloaded.empty())
        return {};
    const FileReaper reaper(downloaded);
    return unpack(downloaded, true, std::move(progress));
}

std::optional<fileString> createTempDatabase(const fileString& database, ProgressSubject* progress)
{
    if (!FileUtils::pathExists(database))
        return std::nullopt;
    fileString copy = database;
    copy.generateAsTempName(fileString(Library::extensions::database));
    if (progress != nullptr)
        progress->updateLabels(database.unicodeString(), {});
    if (!FileUtils::copyFile(database, copy, true))
        return std::nullopt;
    FileUtils::makeFileWritable(copy);
    return copy;
}

fileString getArchivedTexturePath(const fileString& library, bool referenced)
{
    const PathUtils& paths = PathUtils::getObject();
    const fileString folder =
        referenced ? paths.getProprietaryLibraryReferencedFilesPath() : paths.getUserTexturePath();
    return folder + library.stem() + fileString(ZipUtils::getExtension());
}

bool moveArchivedTextures(const fileString& source, const fileString& destination, ProgressSubject* progress)
{
    if (!FileUtils::pathExists(source) || Velk::isSameFile(source, destination))
        return true;
    const bool placed = putInPlace(source, destination, progress);
    if (placed)
        FileSearch::get().resetFileSearch(destination.parentPathWithSeparator());
    FileUtils::removePath(source, FileUtils::noFlags);
    return placed;
}

}  // namespace LibraryImport
