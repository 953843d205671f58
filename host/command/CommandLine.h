#pragma once

#include "host/support/Output.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace VelkHost {

/// What a subcommand does once its arguments are read; returns the program's exit code.
using Action = std::function<int()>;

/// Each adds a subcommand with its options to `app`, and sets `action` when that subcommand was given.
/// `output` and `action` must live until the action has run.
void addSearchCommand(CLI::App& app, Output& output, Action& action);
void addCatalogCommand(CLI::App& app, Output& output, Action& action);
void addFilterCommand(CLI::App& app, Output& output, Action& action);
void addManufacturerCommand(CLI::App& app, Output& output, Action& action);
void addPublishCommand(CLI::App& app, Output& output, Action& action);
void addServeCommand(CLI::App& app, Output& output, Action& action);
void addTexturesCommand(CLI::App& app, Output& output, Action& action);
void addTourCommand(CLI::App& app, Output& output, Action& action);
void addUnpackCommand(CLI::App& app, Output& output, Action& action);
void addUpdateCommand(CLI::App& app, Output& output, Action& action);

/// Runs the `velk` program with these arguments (without the program's name, UTF-8). Never throws.
int runVelk(const std::vector<std::string>& arguments, Output& output) noexcept;

}  // namespace VelkHost
