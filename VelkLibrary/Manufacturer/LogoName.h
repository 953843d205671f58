#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

namespace Library {

/// Whether a logo of this name may be written to and removed from the manufacturer data folder: the name is a
/// plain file name and, in any letter case, not that of one of the module's own files, which may lie in the
/// same folder. Any thread; throws nothing but `std::bad_alloc`.
VELKLIBRARY_EXPORT bool isSafeLogoName(const fileString& name);

}  // namespace Library
