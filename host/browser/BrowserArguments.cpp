#include "host/browser/BrowserArguments.h"

#include "host/browser/language/Translations.h"
#include "host/support/Folders.h"
#include "host/support/ParserArguments.h"
#include "host/support/QtText.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Version.h>

#include <CLI/CLI.hpp>

namespace VelkHost {
namespace {

constexpr const char* argumentExamples = R"(Examples:
  velk-browser
  velk-browser Oak.calibz Doors.calib                imports two libraries
  velk-browser --home ./planner --service https://content.example/
  velk-browser --home ./planner --site ./published   updates without a server
  velk-browser --language fr

Where a window is open on the installation already, it imports the files and comes to the
front, and its own options count.

--site lets this program serve what "velk publish" has published, for trials and for
demonstrations.)";

std::vector<std::string> windowLanguages()
{
    std::vector<std::string> languages;
    for (const QString& language : Translations::languages())
        languages.push_back(language.toStdString());
    return languages;
}

}  // namespace

void describeArguments(CLI::App& parser, BrowserArguments& arguments)
{
    parser.name("velk-browser");
    parser.description("Browse, search and update libraries of objects, materials, textures and styles");
    parser.footer(argumentExamples);
    parser.add_option("--home", arguments.home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
    CLI::Option* const service =
        parser
            .add_option("--service", arguments.options.window.service,
                        "The address of the content service that updates come from")
            ->type_name("URL")
            ->check([](const std::string& address) {
                return Curl::downloadable(address) ? std::string() : "must begin with http:// or https://";
            });
    parser.add_option("--site", arguments.site, "A published site to serve and to update from")
        ->excludes(service)
        ->type_name("DIR");
    parser.add_option("--language", arguments.options.language, "The language of the window (default: the system's)")
        ->type_name("CODE")
        ->check(CLI::IsMember(windowLanguages()));
    parser.add_option("FILE", arguments.files, "Libraries (.calibz, .calib) to import");
    parser.set_version_flag("--version", "velk-browser " VELK_VERSION_STRING);
}

ProgramOptions readArguments(CLI::App& parser, BrowserArguments& arguments, const std::vector<std::string>& given)
{
    std::vector<std::string> disguised = toParser(given);
    parser.parse(disguised);
    arguments.options.window.home = fileString(fromParser(arguments.home));
    arguments.options.site = fileString(fromParser(arguments.site));
    for (const std::string& file : arguments.files)
        arguments.options.files.append(qtText(absolutePath(fileString(fromParser(file))).utf8()));
    return arguments.options;
}

}  // namespace VelkHost
