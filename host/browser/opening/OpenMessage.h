#pragma once

#include "host/support/SystemChannel.h"

#include <QStringList>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// @file
/// What two starts of the program say to each other:
///
///     the second one: the message with the files
///     the first one:  "ready", when its window can take them
///     the second one: "go", when it has not lost its patience meanwhile
///     the first one:  "done", when its window has taken them
///
/// So files are opened by one of the two, also where the other is busy, hangs or dies.

namespace VelkHost {

/// More files are not opened at once.
inline constexpr std::size_t mostOpenedFiles = 10'000;
/// The bytes of their paths in a message, each with its end.
inline constexpr std::size_t mostOpenedBytes = std::size_t{4} << 20;

inline constexpr std::string_view readyAnswer = "ready\n";
inline constexpr std::string_view goAnswer = "go\n";
inline constexpr std::string_view doneAnswer = "done\n";

/// The message about these files, which are absolute paths; empty when they are too many for one.
std::optional<std::string> openMessage(const QStringList& files);

/// How many bytes follow the head of a message, which has headSize bytes. Empty when it is not the head of one, or of
/// one that is too long.
std::optional<std::size_t> lengthInHead(std::string_view head);
inline constexpr std::size_t headSize = 15;

/// The files in what follows the head. Empty when it is anything but absolute paths in UTF-8, each with its end.
std::optional<QStringList> filesInMessage(std::string_view text);

/// Reads `size` bytes from a channel; empty when they do not come in time.
std::optional<std::string> receiveAll(Channel& channel, std::size_t size, WaitEnd end);
/// Whether just this answer comes in time.
bool receives(Channel& channel, std::string_view answer, WaitEnd end);

}  // namespace VelkHost
