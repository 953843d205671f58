#pragma once

#include <gtest/gtest.h>

#include <string>

/// What `action` writes to standard error.
template <typename Action>
std::string standardErrorOf(Action action)
{
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}
