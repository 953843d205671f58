#pragma once

namespace Velk {

/// What `operation` returns; `failure` when it throws. For operations on files that promise not to
/// throw: what they are made of throws std::bad_alloc, and std::runtime_error from randomName(), and
/// both are failures like a full disk. Whatever else came would be one as well.
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
