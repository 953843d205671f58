#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "serve" to the subcommands of `app`.
void addServeCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
