#pragma once

#include "host/browser/BrowserProgram.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace VelkHost {

/// What the parser of the window's program fills in.
struct BrowserArguments
{
    ProgramOptions options;          ///< complete only after readArguments()
    std::string home;                ///< as the parser gives it
    std::string site;                ///< as the parser gives it
    std::vector<std::string> files;  ///< as the parser gives them
};

/// Gives a parser all that `velk-browser` understands, and the texts of the help. It fills in `arguments`, which must
/// live until it has parsed.
void describeArguments(CLI::App& parser, BrowserArguments& arguments);

/// Parses the program's arguments (without its name, UTF-8) and returns its options. Throws CLI::ParseError after a
/// wrong command line, and for "--help" and "--version".
ProgramOptions readArguments(CLI::App& parser, BrowserArguments& arguments, const std::vector<std::string>& given);

}  // namespace VelkHost
