#pragma once

#include <VelkCommon/Files/fileString.h>

namespace bench {

/// The least that splitting a packed library costs: the archive is copied as a file, and its database is read
/// with libdeflate and written.
bool boundOfSplit(const fileString& archive, const fileString& database, const fileString& others);

/// The same split with libzip, which keeps the output open: entries are copied compressed, as they are, and the
/// database is read and written.
bool splitByLibzip(const fileString& archive, const fileString& database, const fileString& others);

/// The merge with libzip: entries that only `source` has are added to a copy of `destination`, which then replaces it.
bool mergeByLibzip(const fileString& source, const fileString& destination);

}  // namespace bench
