#pragma once

#include <VelkCommon/Export.h>

#include <optional>
#include <string_view>

namespace Velk {

/// The built-in English text of a number that the library uses (UTF-8); none for any other number.
/// Texts with arguments hold "%1%", "%2%". Any thread.
VELKCOMMON_EXPORT std::optional<std::string_view> englishText(long id) noexcept;

}  // namespace Velk
