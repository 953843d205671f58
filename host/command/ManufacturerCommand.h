#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "manufacturer" to the subcommands of `app`.
void addManufacturerCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
