#pragma once

#include "Plan.h"

#include <dlfcn.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace faults {

/// The function that takes the name's place where there is no shim.
template <typename Function>
Function* following(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Makes a call that meets what was planned for it; the call returns -1 when it fails.
template <typename Call>
auto faulty(bool watched, Kind kind, Call call) -> decltype(call())
{
    const Effect effect = watched ? meet(kind) : Effect{};
    if (effect.error != 0) {
        errno = effect.error;
        return -1;
    }
    const auto result = call();
    if (effect.killAfter)
        die();
    return result;
}

/// The same of a call that takes or gives a number of bytes.
template <typename Call>
ssize_t faultyBytes(bool watched, Kind kind, std::size_t size, Call call)
{
    const Effect effect = watched ? meet(kind) : Effect{};
    if (effect.error != 0) {
        errno = effect.error;
        return -1;
    }
    const ssize_t result = call(effect.half ? std::max<std::size_t>(size / 2, std::min<std::size_t>(size, 1)) : size);
    if (effect.killAfter)
        die();
    return result;
}

}  // namespace faults
