#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "update" to the subcommands of `app`.
void addUpdateCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
