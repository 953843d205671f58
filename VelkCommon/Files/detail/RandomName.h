#pragma once

#include <string>

namespace Velk::detail {

/// 32 hexadecimal digits that nobody can guess. Throws std::runtime_error when the system gives no random
/// numbers.
std::string randomName();

}  // namespace Velk::detail
