#pragma once

/// @file
/// The numbers that hosts and people rely on, under names for tests. NumbersTest.cpp has their values, so that a
/// number that changes in the product is noticed.

#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/TextNumbers.h>

#include <cstddef>

namespace test {

/// The texts that HostServices::resourceString is asked for.
namespace textNumber {
using namespace Velk::textNumbers;
inline constexpr unsigned int unknown = 4711;  // belongs to no text
}  // namespace textNumber

/// The ids of messages, which are also the numbers of their texts.
namespace messageId {
inline constexpr long preferenceOfOtherType = Velk::textNumbers::preferenceOfOtherType;
inline constexpr long fileUnwritable = Velk::textNumbers::unwritableFile;
}  // namespace messageId

namespace preference = Velk::preferenceNumbers;

/// The values that the preference `progressDisplay` may have.
namespace displayType {
inline constexpr int barOnly = 1;
inline constexpr int percentage = 2;
inline constexpr int amounts = 3;
}  // namespace displayType

/// The lines that messages and assertions name.
namespace reportLine {
inline constexpr std::size_t preferenceRead = 93;
inline constexpr std::size_t searchNode = 142;
inline constexpr std::size_t categoryId = 17;
inline constexpr std::size_t folderId = 15;
inline constexpr std::size_t itemId = 40;
inline constexpr std::size_t foreignTreeNode = 78;
inline constexpr std::size_t filtersUnreadable = 183;
inline constexpr std::size_t filtersUnwritable = 226;
inline constexpr std::size_t filtersNotWritten = 231;
inline constexpr std::size_t manufacturersChecked = 229;
inline constexpr std::size_t manufacturersUnwritable = 244;
}  // namespace reportLine

}  // namespace test
