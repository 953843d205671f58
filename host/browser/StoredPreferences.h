#pragma once

#include <VelkCommon/HostServices.h>

#include <QString>

namespace VelkHost {

/// The file in which the window keeps what it was like, and the preferences: "browser.ini" in the user's library
/// folder of the installed host.
QString settingsFile();

/// Lets the host begin with the preferences that `file` holds, and keep there what is changed. Those of the
/// library only; what the file holds in a wrong form is left out.
void keepPreferences(Velk::HostServices& services, const QString& file);

}  // namespace VelkHost
