#include "host/command/CommonOptions.h"

#include "host/command/CommandLine.h"
#include "host/support/InstallHost.h"
#include "host/support/ParserArguments.h"

#include <CLI/CLI.hpp>

namespace VelkHost {

void addFormatOption(CLI::App& command, std::string& format)
{
    format = "table";
    command.add_option("--format", format, "table or json")
        ->check(CLI::IsMember({"table", "json"}))
        ->type_name("FORMAT");
}

void addHomeOption(CLI::App& command, std::string& home)
{
    command.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
}

void requireText(CLI::Option& option)
{
    option.check([](const std::string& text) { return text.empty() ? "must not be empty" : std::string(); });
}

void useHome(const std::string& home)
{
    if (!home.empty())
        installHost(fileString(fromParser(home)));
}

}  // namespace VelkHost
