#pragma once

#include <VelkCommon/Files/fileString.h>

namespace VelkHost {

/// Makes `folder` ready for a tour: removes "content", "publisher", "site", "home" and "earlier" of an earlier tour.
/// Throws FileError when there are folders of these names that no tour has made.
fileString freshTourFolder(const fileString& folder);

/// Copies a folder with everything in it to a place where nothing is yet. Throws FileError.
void copyFolder(const fileString& from, const fileString& to);

}  // namespace VelkHost
