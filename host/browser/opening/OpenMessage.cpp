#include "host/browser/opening/OpenMessage.h"

#include "host/support/Folders.h"
#include "host/support/QtText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace VelkHost {
namespace {

constexpr std::string_view beginning = "velk1 ";
constexpr std::size_t lengthDigits = 8;  // hexadecimal
static_assert(headSize == beginning.size() + lengthDigits + 1);

constexpr std::size_t longestPath = 1 << 16;  // bytes; no system takes longer ones
constexpr std::size_t receivedAtOnce = 1 << 16;

/// A path as it may stand in a message; empty for any other text.
std::optional<QString> pathIn(std::string_view text)
{
    const QString path = qtText(text);
    const fileString file{std::string(text)};
    if (text.empty() || text.size() > longestPath || path.toStdString() != text || absolutePath(file) != file)
        return std::nullopt;
    return path;
}

}  // namespace

std::optional<std::string> openMessage(const QStringList& files)
{
    std::string text;
    for (const QString& file : files) {
        text += file.toStdString();
        text += '\0';
    }
    if (static_cast<std::size_t>(files.size()) > mostOpenedFiles || text.size() > mostOpenedBytes)
        return std::nullopt;
    std::array<char, lengthDigits + 2> length{};
    std::snprintf(length.data(), length.size(), "%08x\n", static_cast<unsigned>(text.size()));
    return std::string(beginning) + length.data() + text;
}

std::optional<std::size_t> lengthInHead(std::string_view head)
{
    if (head.size() != headSize || !head.starts_with(beginning) || !head.ends_with('\n'))
        return std::nullopt;
    const std::string_view digits = head.substr(beginning.size(), lengthDigits);
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || length > mostOpenedBytes)
        return std::nullopt;
    return length;
}

std::optional<QStringList> filesInMessage(std::string_view text)
{
    if (static_cast<std::size_t>(std::count(text.begin(), text.end(), '\0')) > mostOpenedFiles)
        return std::nullopt;
    QStringList files;
    while (!text.empty()) {
        const std::size_t end = text.find('\0');
        const std::optional<QString> path = pathIn(text.substr(0, end));
        if (end == std::string_view::npos || !path)
            return std::nullopt;
        files.append(*path);
        text.remove_prefix(end + 1);
    }
    return files;
}

// The memory grows with what comes, not with what is announced.
std::optional<std::string> receiveAll(Channel& channel, std::size_t size, WaitEnd end)
{
    std::string bytes;
    while (bytes.size() < size) {
        const std::size_t before = bytes.size();
        bytes.resize(std::min(size, before + receivedAtOnce));
        const std::size_t count = channel.receive(bytes.data() + before, bytes.size() - before, end);
        if (count == 0)
            return std::nullopt;
        bytes.resize(before + count);
    }
    return bytes;
}

bool receives(Channel& channel, std::string_view answer, WaitEnd end)
{
    return receiveAll(channel, answer.size(), end) == answer;
}

}  // namespace VelkHost
