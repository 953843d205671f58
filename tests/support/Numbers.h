#pragma once

/// @file
/// The documented numbers that hosts and people rely on. They are repeated here, apart from the product's own, so
/// that the tests notice when a number changes there.

#include <cstddef>

namespace test {

/// The texts that HostServices::resourceString is asked for.
namespace textNumber {
inline constexpr unsigned int percentage = 2749;
inline constexpr unsigned int amounts = 2750;
inline constexpr unsigned int amountsToolTip = 2752;
inline constexpr unsigned int barOnlyToolTip = 2753;
inline constexpr unsigned int percentageToolTip = 2754;
inline constexpr unsigned int downloading = 8709;  // the library's name
inline constexpr unsigned int checking = 8717;
inline constexpr unsigned int checkingCatalog = 8723;  // the file's name follows
inline constexpr unsigned int asking = 8727;           // about a library
inline constexpr unsigned int kilobytes = 8745;
inline constexpr unsigned int noFilter = 8930;
inline constexpr unsigned int firstStyle = 10000;
inline constexpr unsigned int lastStyle = 10014;
inline constexpr unsigned int manufacturerDefault = 10108;
inline constexpr unsigned int unknown = 4711;  // belongs to no text
}  // namespace textNumber

/// The ids of messages, which are also the numbers of their texts.
namespace messageId {
inline constexpr long preferenceOfOtherType = 272032175;
inline constexpr long fileUnwritable = 272032391;
}  // namespace messageId

/// The preferences that the library uses.
namespace preference {
inline constexpr std::size_t displayType = 236;
inline constexpr std::size_t lastManualUpdateFailed = 251;
inline constexpr std::size_t coreLibrariesStay = 271;
}  // namespace preference

/// The values that the preference `displayType` may have.
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
