#pragma once

namespace Velk {

/// The result of `operation`, or `failure` when it throws. It is meant for operations on files that
/// promise not to throw although the functions they call may throw std::bad_alloc or, from randomName(),
/// std::runtime_error. Any exception counts as an ordinary failure, like a full disk.
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
