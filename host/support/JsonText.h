#pragma once

#include "host/support/QtText.h"

#include <string>

class QJsonObject;

namespace VelkHost {

/// The object as commands print it: indented, valid UTF-8, with a line break at the end.
std::string jsonText(const QJsonObject& object);

}  // namespace VelkHost
