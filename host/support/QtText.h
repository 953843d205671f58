#pragma once

#include <VelkCommon/Text/StringConvert.h>

#include <QString>

#include <string_view>

namespace VelkHost {

/// Qt's form of a UTF-8 text; malformed bytes become U+FFFD.
inline QString qtText(std::string_view text)
{
    return StringConvert::toQString(text, StringConvert::Utf8);
}

}  // namespace VelkHost
