#include "host/browser/BrowserProgram.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/ExitLimit.h"
#include "host/browser/ReadableColours.h"
#include "host/browser/StoredPreferences.h"
#include "host/browser/language/HostTexts.h"
#include "host/browser/language/Reasons.h"
#include "host/browser/language/Translations.h"
#include "host/service/ServiceError.h"
#include "host/service/SiteService.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"
#include "host/support/LastWords.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/HostServices.h>

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::chrono::milliseconds endingPatience{500};  // with the workers of a window that is closed

/// The service within this program, when one is asked for.
std::unique_ptr<SiteService> startedService(const fileString& site)
{
    if (site.empty())
        return nullptr;
    ServiceOptions options;
    options.site = site;
    return std::make_unique<SiteService>(std::move(options));
}

Velk::HostServices windowServices(const fileString& home)
{
    Velk::installHost(hostServices(home));  // tells where the settings are
    Velk::HostServices services = hostServices(home);
    translateHost(services);
    keepPreferences(services, settingsFile());
    return services;
}

/// To be called before the application object is made. Qt 6 does by itself what Qt 5 has to be told.
void allowHighDensity()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

/// Without need, no colours are set, because those that are set do not follow the desktop any more.
void makeColoursReadable()
{
    const QPalette readable = readableColours(QApplication::palette());
    if (readable != QApplication::palette())
        QApplication::setPalette(readable);
}

void tell(const QString& failure)
{
    std::fprintf(stderr, "velk-browser: %s\n", failure.toUtf8().constData());
}

/// Tells why the window cannot open; the exit code.
int failed(const std::exception& error)
{
    tell(failureText(error));
    return EXIT_FAILURE;
}

}  // namespace

int runBrowser(int& argumentCount, char** arguments, ProgramOptions options,
               const std::function<void(BrowserWindow&)>& shown)
{
    allowHighDensity();
    auto whileMade = std::make_optional<EndWithoutMemory>();
    const QApplication application(argumentCount, arguments);
    whileMade.reset();
    QApplication::setApplicationName(QStringLiteral("velk-browser"));
    makeColoursReadable();
    ExitLimit limit;  // first, since all that may end late is made after it
    const Translations translations(QString::fromStdString(options.language));
    const TemporaryFiles temporaryFiles(windowServices(options.window.home), TemporaryFiles::Need::ifPossible);
    try {
        const std::unique_ptr<SiteService> service = startedService(options.site);
        if (service != nullptr)
            options.window.service = service->address();
        BrowserWindow window(options.window);
        window.show();
        window.readLibraries();
        if (shown)
            shown(window);
        const int exitCode = QApplication::exec();
        if (!window.unsaved().isEmpty())
            tell(window.unsaved());
        window.finishSaving();  // everything else may be cut off
        limit.start(exitCode, endingPatience);
        return exitCode;
    } catch (const FileError& error) {
        return failed(error);
    } catch (const ServiceError& error) {
        return failed(error);
    }
}

bool prepareLastWords() noexcept
{
    endWith({"velk-browser: out of memory\n", "velk-browser: unexpected failure\n", EXIT_FAILURE});
    return true;
}

}  // namespace VelkHost
