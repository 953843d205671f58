#pragma once

#include <VelkCommon/Export.h>

#include <optional>
#include <string_view>

namespace Velk {

/// The built-in English text (UTF-8) of a number that the library uses; empty for any other number.
/// Texts with arguments hold "%1%" and "%2%". Any thread.
VELKCOMMON_EXPORT std::optional<std::string_view> englishText(long id) noexcept;

}  // namespace Velk
