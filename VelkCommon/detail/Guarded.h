#pragma once

namespace Velk {

/// What `operation` returns; `failure` when it throws (for want of memory).
template <typename Operation, typename Result>
Result guarded(Operation operation, Result failure) noexcept
{
    try {
        return operation();
    } catch (...) {
        return failure;
    }
}

}  // namespace Velk
