#pragma once

#include <VelkCommon/HostServices.h>

#include <QString>

namespace VelkHost {

/// The file in which the window keeps its state and the preferences: "browser.ini" in the user's library folder of
/// the installed host.
QString settingsFile();

/// Lets the host begin with the preferences that `file` holds, and keeps changes there. Only the module's
/// preferences count; a value in a wrong form is left out.
void keepPreferences(Velk::HostServices& services, const QString& file);

}  // namespace VelkHost
