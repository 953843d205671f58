#pragma once

namespace Velk::detail {

/// The text, or an empty one for null.
inline const char* textOrNothing(const char* text) noexcept
{
    return text != nullptr ? text : "";
}

}  // namespace Velk::detail
