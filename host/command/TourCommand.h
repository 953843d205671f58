#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "tour" to the subcommands of `app`.
void addTourCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
