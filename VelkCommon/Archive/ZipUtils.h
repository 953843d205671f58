#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Zip archives: what is in them, one entry's data, and entries taken over into another archive without
/// being compressed anew.
///
/// An archive counts as readable when its directory is whole and its entries lie apart from each other
/// within the file; zip64, a comment and bytes in front of the first entry are fine; bytes behind the
/// archive and parts on several disks are not. What is not readable has no entries. No operation throws for that, nor
/// for any other failure of a file.
///
/// The name of an entry is read as UTF-8 where the archive says so or its bytes are valid UTF-8, and as code
/// page 437 otherwise; bytes that are not text survive as in any fileString. A name is only compared and never used
/// as a path on disk. Several entries may have one name; the last of them is the one that the name stands for.
///
/// Any thread, one call at a time per archive.
class VELKCOMMON_EXPORT ZipUtils
{
public:
    ZipUtils() = delete;

    /// What the walk through an archive hands out.
    struct ZipHandles
    {
        /// An archive that is being walked through, with the archives that its entries are copied into.
        /// Owned by the walk; valid during it.
        class unzArchiveHandle;
    };
    /// The entry that the walk has come to. Owned by the walk; valid during that call.
    class ZipRawDataInfo;
    class ZipInputStream;

    /// A declared size up to which writeFileDataFromArchive() reads an entry, in bytes: 64 MiB.
    static constexpr unsigned long long wholeEntryLimit = 64ULL << 20;

    /// The extension of texture archives.
    static constexpr const char* extension = ".zip";
    /// The same as UTF-32.
    static std::u32string getExtension();
    /// What stands between an archive's path and an entry's name in a combined path: a single U+0000.
    /// No path can hold it on any system, so a combined path is taken apart in one way only, and
    /// taken for a path on disk it names nothing.
    static std::u32string getDelimiter();

    /// The number of entries, 0 for what is not readable.
    static unsigned long long getSizeOfArchive(const fileString& archive);
    /// The names of the entries, in archive order.
    static std::vector<fileString> getFilenamesInArchive(const fileString& archive);

    /// Visits the entries in archive order, with the archive opened once. `perEntry` gets the entry's name and
    /// what writeFileToArchiveRaw() needs to copy it. The walk ends behind an entry for which `perEntry`
    /// returns false, and before one for which `stop` returns true.
    ///
    /// Archives that entries were copied into stay open for the length of the walk, and are not at their
    /// place before its end. Then each is completed, synced and put in its place in one step, whatever ended
    /// the walk; a failure at that (such as a full disk) leaves at the place what was there before.
    ///
    /// Returns the names visited, the last one included. Returns none when the archive is not readable,
    /// and none when an archive that entries were copied into could not be completed: so whoever copied
    /// an entry and gets no names knows that the copy is not there.
    ///
    /// An exception of a callback passes through; then the archives that entries were copied into are
    /// given up, and what was in their place stays.
    static std::vector<fileString> getFilesDataInArchive(
        const fileString& archive,
        std::function<bool(const std::u32string& name, const ZipHandles::unzArchiveHandle& handle,
                           ZipRawDataInfo* entry)>
            perEntry,
        const std::function<bool()>& stop);

    /// `archive` is readable and its file can be replaced; or the walk in which this thread is has
    /// an archive open there. False once writing to that one has failed.
    static bool canAddToArchive(const fileString& archive);

    /// Copies the entry that the walk has come to into `archive`, byte for byte with all that is said about it:
    /// method, checksum, sizes, time, attributes, extra fields, comment, flags. That does not depend on the
    /// method, nor on whether the entry is encrypted. `entryName` is the name there; the entry's own
    /// bytes of the name are kept when it is the entry's own. What is in `archive` already stays, but for an
    /// entry of that name, which is replaced at its place in the order.
    ///
    /// `create` false: `archive` must be one that canAddToArchive() accepts. True: where no readable
    /// archive stands, a new one takes the place of what is there; where one stands, it is added to as well.
    ///
    /// True when the entry is written, for the rest see getFilesDataInArchive(). False when the entry in
    /// the source is damaged (others may still be copied), and when `archive` cannot be written; after the first
    /// failed write nothing more is written to it in this walk, and what is at its place stays.
    static bool writeFileToArchiveRaw(const fileString& archive, const fileString& entryName,
                                      const ZipHandles::unzArchiveHandle& handle, bool create, ZipRawDataInfo* entry);

    /// The entry that the walk has come to is not damaged in a way that would make writeFileToArchiveRaw()
    /// fail, whatever the archive to write. Its data is not looked at.
    static bool canCopyRaw(const ZipHandles::unzArchiveHandle& handle, const ZipRawDataInfo* entry);

    /// Reads one entry, addressed by its combined path, and hands its bytes to `sink` in one call. `sink`
    /// is called when the entry was read to its end, with the declared length and checksum, and not at all
    /// otherwise: when there is no such entry, when it is damaged, encrypted or compressed by a method
    /// other than "stored" and "deflated".
    /// Throws std::bad_alloc when there is not memory enough, and for an entry with a declared size
    /// above wholeEntryLimit; ZipInputStream is the way to read that. Exceptions of `sink` pass through.
    static void writeFileDataFromArchive(const fileString& combined,
                                         std::function<void(std::vector<unsigned char>&)> sink);
};

/// Reads one entry in blocks, with memory for one block and little more, whatever the entry's size.
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
    /// Opens the entry with that combined path (see getDelimiter()). Never throws but for memory.
    explicit ZipInputStream(const fileString& combined);
    ~ZipInputStream();
    ZipInputStream(const ZipInputStream&) = delete;
    ZipInputStream& operator=(const ZipInputStream&) = delete;

    /// The entry was found and can be read, and nothing wrong with it has shown so far.
    bool isFileOpen() const;
    /// The next `maxBytes` bytes, fewer only where the entry ends; none at the end and after a failure. Blocks of
    /// more than 1 MiB only cost memory. Throws std::bad_alloc when there is not enough for the block.
    std::vector<unsigned char> readArchivedFile(int maxBytes);
    /// Nothing more will come, because the entry is at its end or because of a failure.
    bool reachedEOF() const;
    /// The entry was read to its end, with the declared length and checksum.
    bool isWhole() const;

private:
    struct Source;
    std::unique_ptr<Source> source_;
};
