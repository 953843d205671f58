#pragma once

/// A point of two coordinates.
template <typename T>
struct tPoint
{
    constexpr tPoint() = default;
    /// A point at these coordinates.
    constexpr tPoint(T xValue, T yValue) : x(xValue), y(yValue) {}

    /// True when both coordinates are equal.
    friend constexpr bool operator==(const tPoint&, const tPoint&) = default;

    T x{};  ///< increases to the right
    T y{};  ///< increases downwards or upwards, as its user defines
};
