#pragma once

#include <VelkCommon/Files/fileString.h>

namespace VelkHost {

/// Makes `folder` ready for a tour, without "content", "publisher", "site", "home" and "earlier" of an earlier one.
/// Throws FileError when folders of these names are there that no tour has made.
fileString freshTourFolder(const fileString& folder);

/// Copies a folder with all that is in it to a place where nothing is yet. Throws FileError.
void copyFolder(const fileString& from, const fileString& to);

}  // namespace VelkHost
