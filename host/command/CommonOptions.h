#pragma once

#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace VelkHost {

/// Adds "--format table|json", with the table as the default.
void addFormatOption(CLI::App& command, std::string& format);

/// Adds "--home DIR", the installation that a command works on.
void addHomeOption(CLI::App& command, std::string& home);

/// Refuses an empty text for this argument or option.
void requireText(CLI::Option& option);

/// Makes the installation that was asked for the one that the module works on.
void useHome(const std::string& home);

}  // namespace VelkHost
