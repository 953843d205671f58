#pragma once

#include <VelkCommon/Files/fileString.h>

namespace bench {

/// What splitting a packed library costs at least: the archive copied as a file, and its database read
/// with libdeflate and written.
bool boundOfSplit(const fileString& archive, const fileString& database, const fileString& others);

/// The same split with libzip, the output held open: entries compressed as they are, the database read and written.
bool splitByLibzip(const fileString& archive, const fileString& database, const fileString& others);

/// The merge with libzip: what `source` has more than `destination` is added to a copy, which replaces the
/// destination.
bool mergeByLibzip(const fileString& source, const fileString& destination);

}  // namespace bench
