#pragma once

#include <VelkCommon/Files/fileString.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace Library::detail {

/// The manufacturer manager's name in reports.
inline constexpr const char* manufacturerManagerSource = "Manufacturer/ManufacturerManager";

/// The path of the data file. Makes its folder when that is missing.
fileString manufacturerDataFile();

/// What stands for the time of a data file that was not read: earlier than that of any file.
boost::posix_time::ptime earliestTime();

}  // namespace Library::detail
