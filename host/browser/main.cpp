// The library browser in its own window.
#include "host/browser/BrowserOptions.h"
#include "host/browser/BrowserWindow.h"
#include "host/browser/ExitLimit.h"
#include "host/browser/StoredPreferences.h"
#include "host/browser/language/HostTexts.h"
#include "host/browser/language/Reasons.h"
#include "host/browser/language/Translations.h"
#include "host/service/ServiceError.h"
#include "host/service/SiteService.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Version.h>

#include <QApplication>
#include <QColor>
#include <QPalette>

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::milliseconds endingPatience{500};  // with the workers of a window that is closed

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
    VelkHost::BrowserOptions options;
    std::string site;
    std::string language;
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
    CLI::App parser("Browse, search and update libraries of objects, materials, textures and styles", arguments[0]);
    parser.footer(examples);
    parser.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
    CLI::Option* const service =
        parser
            .add_option("--service", line.options.service, "The address of the content service that updates come from")
            ->type_name("URL")
            ->check([](const std::string& address) {
                return Curl::downloadable(address) ? std::string() : "must begin with http:// or https://";
            });
    parser.add_option("--site", line.site, "A published site to serve and to update from")
        ->excludes(service)
        ->type_name("DIR");
    parser.add_option("--language", line.language, "The language of the window (default: the system's)")
        ->type_name("CODE")
        ->check(CLI::IsMember(windowLanguages()));
    parser.set_version_flag("--version", "velk-browser " VELK_VERSION_STRING);
    try {
        std::vector<std::string> disguised = VelkHost::toParser(VelkHost::programArguments(argumentCount, arguments));
        parser.parse(disguised);
    } catch (const CLI::ParseError& error) {
        line.exitCode = parser.exit(error);
    }
    line.options.home = fileString(VelkHost::fromParser(home));
    return line;
}

/// The service within this program, when one is asked for.
std::unique_ptr<VelkHost::SiteService> startedService(const std::string& site)
{
    if (site.empty())
        return nullptr;
    VelkHost::ServiceOptions options;
    options.site = fileString(VelkHost::fromParser(site));
    return std::make_unique<VelkHost::SiteService>(std::move(options));
}

Velk::HostServices windowServices(const fileString& home)
{
    Velk::installHost(VelkHost::hostServices(home));  // tells where the settings are
    Velk::HostServices services = VelkHost::hostServices(home);
    VelkHost::translateHost(services);
    VelkHost::keepPreferences(services, VelkHost::settingsFile());
    return services;
}

/// Some dark desktops set no colour for links, and Qt's default is a blue that cannot be read there.
void makeLinksReadable()
{
    constexpr int middle = 128;
    QPalette palette = QApplication::palette();
    if (palette.color(QPalette::Window).lightness() >= middle || palette.color(QPalette::Link).lightness() > middle)
        return;
    for (const QPalette::ColorRole role : {QPalette::Link, QPalette::LinkVisited})
        palette.setColor(role, QColor(0x6c, 0xb4, 0xf5));
    QApplication::setPalette(palette);
}

/// Tells why the window cannot open; the exit code.
int failed(const std::exception& error)
{
    std::fprintf(stderr, "velk-browser: %s\n", VelkHost::failureText(error).toUtf8().constData());
    return 1;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    CommandLine line = parsed(argumentCount, arguments);
    if (line.exitCode)
        return *line.exitCode;
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("velk-browser"));
    makeLinksReadable();
    VelkHost::ExitLimit limit;  // first, since all that may end late is made after it
    const VelkHost::Translations translations(QString::fromStdString(line.language));
    const VelkHost::TemporaryFiles temporaryFiles(windowServices(line.options.home));
    try {
        const std::unique_ptr<VelkHost::SiteService> service = startedService(line.site);
        if (service != nullptr)
            line.options.service = service->address();
        VelkHost::BrowserWindow window(line.options);
        window.show();
        window.readLibraries();
        const int exitCode = QApplication::exec();
        window.finishSaving();  // everything else may be cut off
        limit.start(exitCode, endingPatience);
        return exitCode;
    } catch (const VelkHost::FileError& error) {
        return failed(error);
    } catch (const VelkHost::ServiceError& error) {
        return failed(error);
    }
}
