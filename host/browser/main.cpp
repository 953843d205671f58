// The library browser in a window of its own.
#include "host/browser/BrowserWindow.h"
#include "host/support/InstallHost.h"

#include <VelkCommon/HostServices.h>

#include <QApplication>

#include <CLI/CLI.hpp>

int main(int argumentCount, char** arguments)
{
    CLI::App parser("Browse, search and update libraries of objects, materials, textures and styles");
    std::string home;
    parser.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
    VelkHost::BrowserOptions options;
    parser.add_option("--service", options.service, "The content service's address")->type_name("URL");
    CLI11_PARSE(parser, argumentCount, arguments);

    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("velk-browser"));
    options.home = fileString(home);
    Velk::installHost(VelkHost::hostServices(options.home));
    VelkHost::BrowserWindow window(options);
    window.show();
    window.readLibraries();
    return QApplication::exec();
}
