#pragma once

#include <VelkLibrary/UI/TreeCategoryData.h>

#include <cstdint>

namespace Library {

/// What a category's library is, in this host: the numbers of VelkHost::LibraryKind.
enum class LibraryCategory : std::int32_t { Core = 1, Manufacturer = 2, Bonus = 4, User = 8 };

}  // namespace Library
