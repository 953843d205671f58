#pragma once

/// A point of two coordinates.
template <typename T>
struct tPoint
{
    constexpr tPoint() = default;
    /// At these coordinates.
    constexpr tPoint(T xValue, T yValue) : x(xValue), y(yValue) {}

    /// Both coordinates are equal.
    friend constexpr bool operator==(const tPoint&, const tPoint&) = default;

    T x{};  ///< to the right
    T y{};  ///< down or up, as its user has it
};
