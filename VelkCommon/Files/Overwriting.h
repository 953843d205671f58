#pragma once

/// @file
/// Writing into an existing file, which may be written but not replaced: a file that is open to everybody in a folder
/// that is not. A kill or a power failure in the middle leaves neither the old content nor the new. So the file begins
/// with a zero byte meanwhile, which no text does, and what was in it is kept elsewhere, to be put back.
///
/// The functions that write hold the file as LockingFStream does for writing, so that its readers see all of the old
/// content or all of the new. They throw nothing but std::bad_alloc. Any thread.

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

#include <string_view>

namespace Velk {

/// The path in `folder`, which is this user's own, for the backup of `file`: the same however the path of `file` is
/// written. Empty where there is no folder for it.
VELKCOMMON_EXPORT fileString backupOf(const fileString& file, const fileString& folder);

/// Gives `file` the content `text`, synced. `backup` names the file that holds the old content for as long as it takes.
/// After a failure, `file` has its old content again; if even that failed, it is still marked, and `backup` is there.
VELKCOMMON_EXPORT bool overwriteFile(const fileString& file, std::string_view text, const fileString& backup);

/// Puts back what was in `file` before an overwriteFile() that did not end, and removes `backup`. Where there is no
/// such file, nothing is done.
VELKCOMMON_EXPORT void recoverOverwritten(const fileString& file, const fileString& backup);

}  // namespace Velk
