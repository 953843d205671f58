#pragma once

#include "host/command/CommandLine.h"

namespace VelkHost {

/// Adds "catalog" to the subcommands of `app`.
void addCatalogCommand(CLI::App& app, Output& output, Action& action);

}  // namespace VelkHost
