#pragma once

#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Text/Ascii.h>

#include <algorithm>
#include <string>

namespace Velk::detail {

/// Writes `text` to standard error as one line in one write, so that the reports of several threads
/// stay apart. Control characters become blanks, so that names from outside cannot move the
/// cursor.
inline void writeReportLine(std::string text)
{
    std::replace_if(text.begin(), text.end(), Ascii::isControl<char>, ' ');
    Platform::writeToStandardError(text + '\n');
}

}  // namespace Velk::detail
