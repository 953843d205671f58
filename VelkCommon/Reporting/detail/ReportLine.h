#pragma once

#include <VelkCommon/Platform/Platform.h>

#include <algorithm>
#include <string>

namespace Velk::detail {

/// Writes `text` to standard error as one line in one write, so that the reports of several threads
/// stay apart; its line breaks become blanks.
inline void writeReportLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
    Platform::writeToStandardError(text + '\n');
}

}  // namespace Velk::detail
