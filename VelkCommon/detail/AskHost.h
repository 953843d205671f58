#pragma once

#include <functional>
#include <optional>
#include <type_traits>

namespace Velk::detail {

/// The answer of a host's function; empty when the function is absent or throws. For a function without
/// a result: whether it ran to its end. Hold no lock during the call, because the host may call back.
template <typename Answer, typename... Parameters, typename... Arguments>
auto askHost(const std::function<Answer(Parameters...)>& question, const Arguments&... arguments)
    -> std::conditional_t<std::is_void_v<Answer>, bool, std::optional<Answer>>
{
    if (!question)
        return {};
    try {
        if constexpr (std::is_void_v<Answer>) {
            question(arguments...);
            return true;
        } else {
            return question(arguments...);
        }
    } catch (...) {
        return {};
    }
}

}  // namespace Velk::detail
