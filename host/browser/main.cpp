// The library browser in a window of its own.
#include "host/browser/BrowserWindow.h"
#include "host/browser/LibraryJobs.h"
#include "host/support/InstallHost.h"
#include "host/support/QtText.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>

#include <QApplication>

#include <CLI/CLI.hpp>

int main(int argumentCount, char** arguments)
{
    CLI::App parser("Browse, search and update libraries of objects, materials, textures and styles");
    std::string home;
    parser.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
    std::string service;
    parser.add_option("--service", service, "The address of the content service that updates come from")
        ->type_name("URL")
        ->check([](const std::string& address) {
            return Curl::downloadable(address) ? std::string() : "must begin with http:// or https://";
        });
    CLI11_PARSE(parser, argumentCount, arguments);

    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("velk-browser"));
    Velk::installHost(VelkHost::hostServices(fileString(home)));
    VelkHost::BrowserWindow window;
    window.jobs().setService(VelkHost::qtText(service));
    window.show();
    window.readLibraries();
    return QApplication::exec();
}
