#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace Library::detail {

/// The manufacturer manager's name in reports.
inline constexpr const char* manufacturerManagerSource = "Manufacturer/ManufacturerManager";

/// The path of the data file. Makes its folder when that is missing.
fileString manufacturerDataFile();

/// What stands for the time of a data file that was not read: earlier than that of any file.
boost::posix_time::ptime earliestTime();

/// Whether a logo of this name may be written to and removed from the data folder: it is a plain file name
/// and none of the module's own files, which may stand in the same folder.
VELKLIBRARY_EXPORT bool isSafeLogoName(const fileString& name);

}  // namespace Library::detail
