#pragma once

#include <VelkCommon/Files/fileString.h>

namespace VelkHost {

/// Makes `folder` ready for a tour, without "content", "publisher", "site" and "home" of an earlier one. Throws
/// CatalogError when folders of these names are there that no tour has made.
fileString freshTourFolder(const fileString& folder);

}  // namespace VelkHost
