#pragma once

#include <VelkCommon/Export.h>

#include <string>
#include <string_view>

/// The code page Windows-1252. Throws only when memory runs out. Any thread.
namespace StringConvert {

/// Windows-1252 from UTF-32. The five unassigned bytes 81 8D 8F 90 9D stand for the C1 controls of the same number;
/// a character that the code page lacks becomes "?".
VELKCOMMON_EXPORT std::string toWin1252(std::u32string_view text);
/// UTF-32 from Windows-1252; every byte has a meaning, so nothing is lost on the way back.
VELKCOMMON_EXPORT std::u32string fromWin1252(std::string_view text);

}  // namespace StringConvert
