#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Zip archives: lists their entries, reads the data of one, and copies entries into another archive without
/// compressing them again.
///
/// An archive counts as readable when its directory is intact and its entries do not overlap and lie within the
/// file. Zip64, a comment and bytes in front of the first entry are fine; bytes behind the archive and parts on
/// several disks are not. An archive that is not readable is treated as having no entries. No operation throws
/// for that, nor for any other failure of a file.
///
/// The name of an entry is read as UTF-8 where the archive says so or its bytes are valid UTF-8, and as code
/// page 437 otherwise; bytes that are not text survive as in any fileString. A name is only compared and never used
/// as a path on disk. When several entries have the same name, the name stands for the last of them.
///
/// Any thread, one call at a time per archive.
class VELKCOMMON_EXPORT ZipUtils
{
public:
    ZipUtils() = delete;

    /// Holds the type of handle that a walk through an archive gives to its callback.
    struct ZipHandles
    {
        /// An archive that is being walked through, with the archives that its entries are copied into.
        /// Owned by the walk; valid during it.
        class unzArchiveHandle;
    };
    /// The entry that the walk has come to. Owned by the walk; valid during that call.
    class ZipRawDataInfo;
    class ZipInputStream;

    /// The largest declared size, in bytes, of an entry that writeFileDataFromArchive() reads: 64 MiB.
    static constexpr unsigned long long wholeEntryLimit = 64ULL << 20;

    /// The extension of texture archives.
    static constexpr const char* extension = ".zip";
    /// The same as UTF-32.
    static std::u32string getExtension();
    /// What separates an archive's path from an entry's name in a combined path: a single U+0000.
    /// No path on any system can hold it, so a combined path can be split in only one way, and names
    /// nothing when it is used as a path on disk.
    static std::u32string getDelimiter();

    /// The number of entries; 0 for an archive that is not readable.
    static unsigned long long getSizeOfArchive(const fileString& archive);
    /// The names of the entries, in archive order; none for an archive that is not readable.
    static std::vector<fileString> getFilenamesInArchive(const fileString& archive);

    /// Visits the entries in archive order, with the archive opened once. `perEntry` gets the entry's name and
    /// what writeFileToArchiveRaw() needs to copy it. The walk ends after an entry for which `perEntry`
    /// returns false, and before one for which `stop` returns true.
    ///
    /// Archives that entries were copied into stay open during the walk, and do not appear at their paths
    /// before its end. Then each is completed, synced and put in place in one step, whatever ended the walk;
    /// if that fails (on a full disk, for example), the file that was there before stays.
    ///
    /// Returns the names visited, the last one included. Returns none when the archive is not readable,
    /// and none when an archive that entries were copied into could not be completed. So a caller that copied
    /// an entry and gets no names knows that the copy is not there.
    ///
    /// An exception of a callback passes through; then the archives that entries were copied into are
    /// discarded, and the files that were there before stay.
    static std::vector<fileString> getFilesDataInArchive(
        const fileString& archive,
        std::function<bool(const std::u32string& name, const ZipHandles::unzArchiveHandle& handle,
                           ZipRawDataInfo* entry)>
            perEntry,
        const std::function<bool()>& stop);

    /// True when `archive` is readable and its file can be replaced, or when the walk that this thread is in
    /// has an archive open there for writing. False once writing to that archive has failed.
    static bool canAddToArchive(const fileString& archive);

    /// Copies the entry that the walk has come to into `archive`, byte for byte with everything that is recorded
    /// about it: method, checksum, sizes, time, attributes, extra fields, comment and flags. This works for any
    /// method, and for encrypted entries too. `entryName` is the name in `archive`; if it equals the entry's
    /// own name, the bytes of that name are kept. Entries that `archive` already holds stay, except one of
    /// that name, which is replaced at its position in the order.
    ///
    /// With `create` false, `archive` must be one that canAddToArchive() accepts. With `create` true, an archive
    /// that is readable is added to as well; anything else at that path is replaced by a new archive.
    ///
    /// Returns true when the entry was written; getFilesDataInArchive() says when the archive is put in place.
    /// Returns false when the entry in the source is damaged (others may still be copied), and when `archive`
    /// cannot be written; after the first failed write nothing more is written to it in this walk, and the
    /// file that was there before stays.
    static bool writeFileToArchiveRaw(const fileString& archive, const fileString& entryName,
                                      const ZipHandles::unzArchiveHandle& handle, bool create, ZipRawDataInfo* entry);

    /// True unless the entry that the walk has come to is damaged in a way that makes writeFileToArchiveRaw()
    /// fail for any target archive. Does not look at the entry's data.
    static bool canCopyRaw(const ZipHandles::unzArchiveHandle& handle, const ZipRawDataInfo* entry);

    /// Reads one entry, addressed by its combined path, and hands its bytes to `sink` in one call. `sink`
    /// is called only if the entry was read to its end, with the declared length and checksum. It is not called
    /// when there is no such entry, or when the entry is damaged, encrypted or compressed by a method other
    /// than "stored" and "deflated".
    /// Throws std::bad_alloc when there is not enough memory, and for an entry with a declared size
    /// above wholeEntryLimit, which ZipInputStream can read. Exceptions of `sink` pass through.
    static void writeFileDataFromArchive(const fileString& combined,
                                         std::function<void(std::vector<unsigned char>&)> sink);
};

/// Reads one entry in blocks, using little more memory than one block needs, whatever the entry's size.
///
///     ZipUtils::ZipInputStream entry(combined);
///     while (entry.isFileOpen() && !entry.reachedEOF())
///         use(entry.readArchivedFile(1 << 20));
///     const bool whole = entry.isWhole();
///
/// One thread at a time.
class VELKCOMMON_EXPORT ZipUtils::ZipInputStream
{
public:
    /// Opens the entry with that combined path (see getDelimiter()). Throws nothing but std::bad_alloc.
    explicit ZipInputStream(const fileString& combined);
    ~ZipInputStream();
    ZipInputStream(const ZipInputStream&) = delete;
    ZipInputStream& operator=(const ZipInputStream&) = delete;

    /// True when the entry was found and can be read, and no fault has been found in it so far.
    bool isFileOpen() const;
    /// The next `maxBytes` bytes, fewer only where the entry ends; none at the end and after a failure. Blocks of
    /// more than 1 MiB cost memory and gain nothing. Throws std::bad_alloc when there is not enough memory.
    std::vector<unsigned char> readArchivedFile(int maxBytes);
    /// True when no more bytes will come, because the entry has ended or because of a failure.
    bool reachedEOF() const;
    /// True when the entry was read to its end, with the declared length and checksum.
    bool isWhole() const;

private:
    struct Source;
    std::unique_ptr<Source> source_;
};
