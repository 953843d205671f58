#pragma once

/// @file
/// What the catalog update hands to its receiver.

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>

namespace LibraryCatalogUpdate {

/// How a run ended.
enum Outcome : std::int32_t {
    ErrorsAutomatic = 0,  ///< something failed in an automatic run
    ErrorsManual = 1,     ///< something failed in a manual run
    Installed = 2,        ///< nothing failed, and something new was handed over
    UpToDate = 3          ///< nothing failed, and nothing was new
};

/// What was remarkable about a run. Of several events the last one counts.
enum ResultCode : std::uint32_t {
    NothingRemarkable = 0x10369189,
    TransferAborted = 0x1036918A,    ///< a download was cancelled or stalled
    EndpointUnknown = 0x1036918B,    ///< the service's address led nowhere when the downloads began
    CatalogNotRenamed = 0x1036918E,  ///< a downloaded core file was locked or could not be renamed
};

/// The final report of a run.
struct UpdateData
{
    std::int32_t outcome = ErrorsAutomatic;        ///< an Outcome
    std::set<std::string> updatedNames;            ///< stems of what was installed, Windows-1252
    std::uint32_t resultCode = NothingRemarkable;  ///< a ResultCode
};

}  // namespace LibraryCatalogUpdate

/// The paths of an installed catalog and of the newly downloaded file that replaces it.
using FileStringPair = std::pair<fileString, fileString>;
