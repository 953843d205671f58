#pragma once

#include <VelkCommon/Platform/Platform.h>

#include <algorithm>
#include <string>

namespace Velk::detail {

/// Writes `text` to standard error as one line in one write, so that the reports of several threads
/// stay apart. Its control characters become blanks: names from outside move no cursor.
inline void writeReportLine(std::string text)
{
    const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; };
    std::replace_if(text.begin(), text.end(), isControl, ' ');
    Platform::writeToStandardError(text + '\n');
}

}  // namespace Velk::detail
