#pragma once

#include "host/manual/ProgramDescription.h"

#include <string>
#include <vector>

namespace VelkHost {

/// A command with the words that lead to it: "catalog build"; none for the program itself.
struct NestedCommand
{
    std::string words;
    const CommandDescription* description = nullptr;
};

/// The program and all its commands, each before those in it. They live as long as the program's description.
std::vector<NestedCommand> allCommands(const CommandDescription& program);

/// The words with a blank between them, and none beside an empty one.
std::string joined(const std::string& left, const std::string& right);
std::string joined(const std::vector<std::string>& words);

/// All names of all options.
std::vector<std::string> optionNames(const CommandDescription& command);
/// The names of the commands in this one.
std::vector<std::string> commandNames(const CommandDescription& command);

/// "_velk_browser" for "velk-browser": a name that every shell takes for a function.
std::string shellFunction(const std::string& words);

/// The text with every `from` replaced.
std::string replaced(std::string text, const std::string& from, const std::string& to);

}  // namespace VelkHost
