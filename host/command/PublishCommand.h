#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "publish" to the subcommands of `app`.
void addPublishCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
