#pragma once

#include <VelkLibrary/Export.h>

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Reporting/ProgressSubject.h>

#include <memory>
#include <optional>
#include <utility>

/// Unpacks packed libraries and puts their texture archives in place.
///
/// A packed library (".calibz") is a zip archive of one catalog file (".calib") and any number of other
/// entries. A null progress object means that nothing is reported. Nothing is written to the error log. Any
/// thread; no state is kept between calls. Throws std::bad_alloc, and std::runtime_error when the system gives
/// no random numbers for a temporary name; files made until then are removed.
namespace LibraryImport {

/// Unpacks a local archive into its catalog file (`first`) and a ".zip" archive of all its other entries, still
/// compressed (`second`). With `useTempNames` both get fresh names in the temporary folder. Without, both lie
/// beside the archive and have its base name: an existing catalog file is overwritten, and a readable ".zip"
/// keeps what it held and receives the entries in addition.
///
/// `first` is present only when the archive held a catalog file that was read and written completely, with 256
/// MiB of the disk left free; `second` only when at least one other entry was copied and the ".zip" was
/// completed. Of several catalog files the last one wins. An entry that cannot be copied is left out. A file at
/// an output path that is not in the result is removed, even if it existed before. Both are empty when the
/// archive does not exist, and after a cancellation, which is checked at each entry.
///
/// Without temporary names, an archive named ".zip" is its own output: it receives its own entries and is not
/// removed. One named ".calib" is not unpacked, because its catalog file would take its place.
///
/// The caller owns the files. `progress` gets one step per entry; all steps together are 100 units.
VELKLIBRARY_EXPORT std::pair<std::optional<fileString>, std::optional<fileString>> unpack(
    const fileString& archive, bool useTempNames, std::shared_ptr<ProgressSubject> progress);

/// Does the same with temporary names, also for an archive at a network address (http or https), which `source`
/// then holds as text. The download is removed afterwards; both results are empty when it fails.
VELKLIBRARY_EXPORT std::pair<std::optional<fileString>, std::optional<fileString>> unpackArchivedLibrary(
    const fileString& source, std::shared_ptr<ProgressSubject> progress);

/// A writable copy of a catalog file under a fresh name in the temporary folder, which the caller owns; empty
/// when the file does not exist or cannot be copied. `progress` gets the path of the file as its main label.
VELKLIBRARY_EXPORT std::optional<fileString> createTempDatabase(const fileString& database, ProgressSubject* progress);

/// The path of a library's texture archive: the user's texture folder, or with `referenced` the folder of
/// referenced files, followed by the library's stem and ZipUtils::getExtension().
VELKLIBRARY_EXPORT fileString getArchivedTexturePath(const fileString& library, bool referenced);

/// Moves the archive `source` to `destination`, whose folder is made when it is missing. An archive that is
/// already there is replaced in one step by one that holds the entries of both, each name once; for a name in
/// both, the entry of the destination stays. `source` is removed in any case, even after a failure (false),
/// which leaves the destination as it was. Also true when there is no source, and when it is its own
/// destination. Cannot be cancelled; `progress` gets a step for each entry of the destination and then for each
/// entry of the source.
VELKLIBRARY_EXPORT bool moveArchivedTextures(const fileString& source, const fileString& destination,
                                             ProgressSubject* progress);

}  // namespace LibraryImport
