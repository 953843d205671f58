// The library browser in its own window.
#include "host/browser/BrowserArguments.h"
#include "host/browser/BrowserProgram.h"
#include "host/support/System.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <utility>

namespace {

/// The program's arguments; after a wrong command line, or "--help", only the exit code.
struct CommandLine
{
    VelkHost::ProgramOptions options;
    std::optional<int> exitCode;
};

CommandLine parsed(int argumentCount, char** arguments)
{
    CommandLine line;
    CLI::App parser;
    VelkHost::BrowserArguments read;
    VelkHost::describeArguments(parser, read);
    try {
        line.options = VelkHost::readArguments(parser, read, VelkHost::programArguments(argumentCount, arguments));
    } catch (const CLI::ParseError& error) {
        line.exitCode = parser.exit(error);
    }
    return line;
}

// Before main(), as what runs until then may throw, too.
[[maybe_unused]] const bool hasLastWords = VelkHost::prepareLastWords();

}  // namespace

int main(int argumentCount, char** arguments)
{
    VelkHost::shareParentsConsole();
    CommandLine line = parsed(argumentCount, arguments);
    if (line.exitCode)
        return *line.exitCode;
    line.options.isOneWindow = true;
    return VelkHost::runBrowser(argumentCount, arguments, std::move(line.options));
}
