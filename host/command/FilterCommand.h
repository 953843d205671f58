#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "filter" to the subcommands of `app`.
void addFilterCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
