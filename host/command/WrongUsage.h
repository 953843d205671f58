#pragma once

#include "host/support/Output.h"

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace VelkHost {

/// Says so, with what was probably meant, when the first arguments name a command that there is not ("velk serch",
/// "velk filter shw"). False, and nothing said, when there is no such mistake.
bool reportUnknownCommand(const CLI::App& app, const std::vector<std::string>& arguments, const Output& output);

/// Says what is wrong with a command line that `app` refused with `error`, and where help is. An argument that nothing
/// takes comes first: what is missing is mostly what it was meant for.
void reportWrongUsage(const CLI::App& app, const CLI::ParseError& error, const Output& output);

}  // namespace VelkHost
