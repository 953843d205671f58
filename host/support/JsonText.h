#pragma once

#include <QString>

#include <string>
#include <string_view>

class QJsonObject;

namespace VelkHost {

/// UTF-8 as JSON takes it; what is malformed becomes U+FFFD.
QString qtText(std::string_view text);

/// The object as commands print it: indented, valid UTF-8, with a line break at the end.
std::string jsonText(const QJsonObject& object);

}  // namespace VelkHost
