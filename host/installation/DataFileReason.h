#pragma once

#include "host/support/Reason.h"

#include <VelkLibrary/Data/DataFileResult.h>

namespace VelkHost {

/// What is wrong with a data file that was read: a sentence without its subject, the file.
Reason reasonOf(const Library::DataFileResult& reading);

}  // namespace VelkHost
