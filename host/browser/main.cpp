// The library browser in its own window.
#include "host/browser/BrowserProgram.h"
#include "host/browser/language/Translations.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Version.h>

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* examples = R"(Examples:
  velk-browser
  velk-browser --home ./planner --service https://content.example/
  velk-browser --home ./planner --site ./published   updates without a server
  velk-browser --language fr

--site lets this program serve what "velk publish" has published, for trials and for
demonstrations.)";

/// The program's arguments; after a wrong command line, or "--help", only the exit code.
struct CommandLine
{
    VelkHost::ProgramOptions options;
    std::optional<int> exitCode;
};

std::vector<std::string> windowLanguages()
{
    std::vector<std::string> languages;
    for (const QString& language : VelkHost::Translations::languages())
        languages.push_back(language.toStdString());
    return languages;
}

CommandLine parsed(int argumentCount, char** arguments)
{
    CommandLine line;
    std::string home;
    std::string site;
    CLI::App parser("Browse, search and update libraries of objects, materials, textures and styles", arguments[0]);
    parser.footer(examples);
    parser.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
    CLI::Option* const service =
        parser
            .add_option("--service", line.options.window.service,
                        "The address of the content service that updates come from")
            ->type_name("URL")
            ->check([](const std::string& address) {
                return Curl::downloadable(address) ? std::string() : "must begin with http:// or https://";
            });
    parser.add_option("--site", site, "A published site to serve and to update from")
        ->excludes(service)
        ->type_name("DIR");
    parser.add_option("--language", line.options.language, "The language of the window (default: the system's)")
        ->type_name("CODE")
        ->check(CLI::IsMember(windowLanguages()));
    parser.set_version_flag("--version", "velk-browser " VELK_VERSION_STRING);
    try {
        std::vector<std::string> disguised = VelkHost::toParser(VelkHost::programArguments(argumentCount, arguments));
        parser.parse(disguised);
    } catch (const CLI::ParseError& error) {
        line.exitCode = parser.exit(error);
    }
    line.options.window.home = fileString(VelkHost::fromParser(home));
    line.options.site = fileString(VelkHost::fromParser(site));
    return line;
}

// Before main(), as what runs until then may throw, too.
[[maybe_unused]] const bool hasLastWords = VelkHost::prepareLastWords();

}  // namespace

int main(int argumentCount, char** arguments)
{
    CommandLine line = parsed(argumentCount, arguments);
    if (line.exitCode)
        return *line.exitCode;
    return VelkHost::runBrowser(argumentCount, arguments, std::move(line.options));
}
