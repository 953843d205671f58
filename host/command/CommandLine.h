#pragma once

#include "host/support/Output.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace VelkHost {

/// What a subcommand does once its arguments are read; returns the program's exit code. Whoever adds a
/// subcommand sets it when that subcommand was given; it and the output live until it has run.
using Action = std::function<int()>;

/// Gives a parser all that `velk` understands: its commands with their options, and the texts of the help. Parser,
/// output and action are used until the action has run.
void describeCommands(CLI::App& app, Output& output, Action& action);

/// Runs the `velk` program with these arguments (without the program's name, UTF-8). Never throws.
int runVelk(const std::vector<std::string>& arguments, Output& output) noexcept;

}  // namespace VelkHost
