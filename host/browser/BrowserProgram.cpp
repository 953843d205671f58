#include "host/browser/BrowserProgram.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/ExitLimit.h"
#include "host/browser/ReadableColours.h"
#include "host/browser/StoredPreferences.h"
#include "host/browser/language/HostTexts.h"
#include "host/browser/language/Reasons.h"
#include "host/browser/language/Translations.h"
#include "host/browser/opening/OneWindow.h"
#include "host/browser/opening/OpenRequests.h"
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
#include <system_error>
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

/// Asks a window that is open already, before anything is made that only a window needs.
ProgramStart startOfProgram(const ProgramOptions& options)
{
    if (!options.isOneWindow)
        return {};
    Velk::installHost(hostServices(options.window.home));
    return startOf(windowName(fileString(settingsFile().toStdString()).parentPath()), options.files);
}

/// Lets later starts of the program open files in the window; null where nobody can be heard.
std::unique_ptr<OpenRequests> openRequests(BrowserWindow& window, std::unique_ptr<ChannelListener> listener)
{
    if (listener == nullptr)
        return nullptr;
    try {
        auto requests = std::make_unique<OpenRequests>(
            std::move(listener), [&window](std::size_t files) { return window.mayOpenFiles(files); });
        QObject::connect(requests.get(), &OpenRequests::started, &window, [&window](const QStringList& files) {
            window.comeToFront();
            window.openFiles(files);
        });
        return requests;
    } catch (const std::system_error&) {  // no thread can be started
        return nullptr;
    }
}

/// Lets the user work until the window is closed; the exit code. What is started afterwards has a window of its own.
int runWindow(BrowserWindow& window, std::unique_ptr<ChannelListener> listener)
{
    const std::unique_ptr<OpenRequests> requests = openRequests(window, std::move(listener));
    return QApplication::exec();
}

}  // namespace

int runBrowser(int& argumentCount, char** arguments, ProgramOptions options,
               const std::function<void(BrowserWindow&)>& shown)
{
    ProgramStart start = startOfProgram(options);
    if (start.isHandedOver)
        return EXIT_SUCCESS;
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
        window.openFiles(options.files);
        const int exitCode = runWindow(window, std::move(start.listener));
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
