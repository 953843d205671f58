#pragma once

#include "host/manual/ProgramDescription.h"

#include <string>

namespace VelkHost {

/// What shells need to complete a program's command lines: its commands, its options, the values that there are, and
/// files with the right extensions. Each is a file that the shell loads by itself from its folder for completions.
/// Names, choices and extensions must consist of letters, digits and dashes.
/// @{
std::string bashCompletion(const CommandDescription& program);
std::string zshCompletion(const CommandDescription& program);
std::string fishCompletion(const CommandDescription& program);
/// @}

}  // namespace VelkHost
