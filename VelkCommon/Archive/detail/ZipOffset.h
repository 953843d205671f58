#pragma once

#include <VelkCommon/Export.h>

#include <cstdint>
#include <string>

namespace Velk::detail {

/// Sets where the local header of an entry lies in a record of the directory, keeping the record's form where
/// possible. From 4 GiB on the offset stands in a zip64 field, which is added where there is none. False when there
/// is no room for it.
VELKCOMMON_EXPORT bool setOffset(std::string& record, std::uint64_t offset);

}  // namespace Velk::detail
