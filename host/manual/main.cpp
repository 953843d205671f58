// Writes what a system wants to know about the programs: their manual pages, and their completions for shells.
#include "host/browser/BrowserArguments.h"
#include "host/command/CommandLine.h"
#include "host/manual/Completions.h"
#include "host/manual/ManualPage.h"
#include "host/manual/ProgramDescription.h"
#include "host/support/InstallHost.h"
#include "host/support/System.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Version.h>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace VelkHost;

CommandDescription commandProgram()
{
    CLI::App parser;
    Output output;
    Action action;
    describeCommands(parser, output, action);
    return describe(parser);
}

CommandDescription browserProgram()
{
    CLI::App parser;
    BrowserArguments arguments;
    describeArguments(parser, arguments);
    return describe(parser);
}

void write(const std::string& path, const std::string& text)
{
    writeWhole(fileString(path), text);
}

void writeAll(const std::string& folder, const CommandDescription& program, const std::string& other)
{
    write(folder + "/" + program.name + ".1", manualPage(program, VELK_VERSION_STRING, {other}));
    write(folder + "/" + program.name + ".bash", bashCompletion(program));
    write(folder + "/_" + program.name, zshCompletion(program));
    write(folder + "/" + program.name + ".fish", fishCompletion(program));
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    try {
        installHost();
        const std::vector<std::string> given = programArguments(argumentCount, arguments);
        if (given.size() != 1) {
            std::fputs("velk_manual FOLDER writes the manual pages and the shells' completions into that folder\n",
                       stderr);
            return 2;
        }
        writeAll(given.front(), commandProgram(), "velk-browser");
        writeAll(given.front(), browserProgram(), "velk");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velk_manual: %s\n", error.what());
        return 1;
    }
}
