#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "textures" to the subcommands of `app`.
void addTexturesCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
