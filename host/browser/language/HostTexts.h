#pragma once

#include <VelkCommon/HostServices.h>

namespace VelkHost {

/// Gives the module its numbered texts in the window's language, and the way in which numbers are written there.
void translateHost(Velk::HostServices& services);

}  // namespace VelkHost
