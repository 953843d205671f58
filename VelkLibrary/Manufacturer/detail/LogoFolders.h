#pragma once

#include <VelkCommon/Files/fileString.h>

namespace Library::detail {

/// Whether one of the folders that a logo's safe name leads through, below `folder`, is a link.
bool logoFoldersHoldLink(const fileString& folder, const fileString& name);

}  // namespace Library::detail
