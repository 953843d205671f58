#pragma once

#include <VelkCommon/Files/LockingFStream.h>

namespace test {

/// The modes that LockingFStream knows.
inline constexpr int readText = LockingFStream::in;
inline constexpr int readBytes = LockingFStream::in | LockingFStream::binary;
inline constexpr int writeText = LockingFStream::out;
inline constexpr int writeBytes = LockingFStream::out | LockingFStream::binary;

}  // namespace test
