#pragma once

/// A point of two coordinates.
template <typename T>
struct tPoint
{
    constexpr tPoint() = default;
    constexpr tPoint(T xValue, T yValue) : x(xValue), y(yValue) {}

    friend constexpr bool operator==(const tPoint&, const tPoint&) = default;

    T x{};
    T y{};
};
