#pragma once

#include <VelkCommon/HostServices.h>

namespace VelkHost {

/// What a program without a window supplies: the module's defaults (English texts, preferences in memory),
/// and messages on standard error, under the program's name.
///
/// The folders are those of the installation at `home`: core, bonus, manufacturer, manufacturer-data,
/// referenced, textures, user (with the error log) and temp below it. An empty `home` means the folder that
/// the environment variable VELK_HOME names; without that too, they are the system's folders for this user. A relative
/// path counts from the current folder. Servers are verified against the certificates (PEM) in the file that
/// VELK_CERTIFICATES names, or those of the system.
Velk::HostServices hostServices(const fileString& home = {});

/// Installs hostServices() for this process.
void installHost(const fileString& home = {});

}  // namespace VelkHost
