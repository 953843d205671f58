#pragma once

namespace VelkHost {

/// Installs what a program without a window supplies: the library's defaults (the user's folders, English
/// texts, preferences in memory), and messages on standard error, under the program's name.
void installHost();

}  // namespace VelkHost
