#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
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

/// Adds an option or argument that takes a whole number from `least` to `most`, and calls `take` with it. Whatever else
/// is typed is refused, and told which numbers there are.
CLI::Option& addNumberOption(CLI::App& command, const std::string& name, const std::string& description,
                             std::int64_t least, std::int64_t most, std::function<void(std::int64_t)> take);

/// Adds "--limit N": how many of `what` are shown, with 0 for all and what `limit` holds as the default.
void addLimitOption(CLI::App& command, std::size_t& limit, const std::string& what);

/// Refuses an empty text for this argument or option.
void requireText(CLI::Option& option);

/// Makes the installation that was asked for the one that the module works on.
void useHome(const std::string& home);

}  // namespace VelkHost
