#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string_view>

namespace Velk::detail {

/// The name of an entry from its bytes: UTF-8 when it is declared so or valid as such, code page 437
/// otherwise.
fileString decodeZipName(std::string_view bytes, bool declaredUtf8);

}  // namespace Velk::detail
