#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "unpack" to the subcommands of `app`.
void addUnpackCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
