#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "pack" to the subcommands of "catalog".
void addPackCommand(CLI::App& catalog, Output& output, Action& action);

}  // namespace VelkHost
