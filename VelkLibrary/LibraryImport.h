#pragma once

#include <VelkLibrary/Export.h>

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Reporting/ProgressSubject.h>

#include <memory>
#include <optional>
#include <utility>

/// Takes packed libraries apart and puts the archives of their textures and referenced files in place.
///
/// A packed library (".calibz") is a zip archive of one library database (".calib") and any number of other
/// entries. A null progress object means that nothing is reported. Nothing is written to the error log. Any
/// thread; no state is kept between calls. Exceptions: std::bad_alloc, and std::runtime_error when
/// the system gives no random numbers for a temporary name; files made until then are removed.
namespace LibraryImport {

/// Unpacks a local archive into its database (`first`) and a ".zip" archive of all its other entries, still
/// compressed (`second`). With `useTempNames` both get fresh names in the temporary folder; without, they lie
/// beside the archive with its base name, where the database is overwritten and a readable ".zip" receives
/// the entries in addition to what it held.
///
/// `first` is there only when the archive held a database that was read whole and written whole, with 256 MiB
/// of the disk left free; `second` only when at least one other entry was copied and the ".zip" was
/// completed. Of several databases the last one wins. An entry that cannot be copied is left out. Files at the two
/// output paths that are not in the result are removed, be they from before. Both are empty when the
/// archive does not exist, and after cancellation, which is looked for at each entry.
///
/// An archive named ".zip" receives its own entries and is not removed; of one named ".calib", beside which
/// its database would have its own name, nothing is unpacked.
///
/// The caller owns the files. `progress` gets one step per entry, over the 100 units.
VELKLIBRARY_EXPORT std::pair<std::optional<fileString>, std::optional<fileString>> unpack(
    const fileString& archive, bool useTempNames, std::shared_ptr<ProgressSubject> progress);

/// The same with temporary names for an archive that may be at a network location (http or https), held as
/// text in `source`. The download is removed afterwards; both are empty when it fails.
VELKLIBRARY_EXPORT std::pair<std::optional<fileString>, std::optional<fileString>> unpackArchivedLibrary(
    const fileString& source, std::shared_ptr<ProgressSubject> progress);

/// A writable copy of a database under a fresh name in the temporary folder, which the caller owns; none
/// when the database does not exist or cannot be copied. `progress` gets the database's path as the main label.
VELKLIBRARY_EXPORT std::optional<fileString> createTempDatabase(const fileString& database, ProgressSubject* progress);

/// The place of the archive of a library's textures: the user's texture folder, or with `referenced` the
/// folder of referenced files, then the library's stem, then ZipUtils::getExtension().
VELKLIBRARY_EXPORT fileString getArchivedTexturePath(const fileString& library, bool referenced);

/// Puts the archive `source` in place at `destination`, making the folder when missing. Where an archive
/// is there already, it is replaced in one step by one that holds the entries of both, each name once; a
/// name in both comes from the destination. `source` is removed in any case, also after a failure (false),
/// which leaves the destination as it was. True without a source, and for one that is its own destination. There is no
/// cancellation; `progress` gets a step for each entry of the destination and then for each of the source.
VELKLIBRARY_EXPORT bool moveArchivedTextures(const fileString& source, const fileString& destination,
                                             ProgressSubject* progress);

}  // namespace LibraryImport
