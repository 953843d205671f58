#pragma once

#include <QPalette>

namespace VelkHost {

/// The desktop's colours, with others for links and quiet texts where these cannot be read on them: dark desktops may
/// set none, and Qt's own are meant for light ones.
QPalette readableColours(QPalette desktop);

}  // namespace VelkHost
