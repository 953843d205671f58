// The window with a hand that does one thing in it, for the fault harness:
//
//     velk_driven_window WORK [ARGUMENT...] [--service URL]
//
// It says what the window says, and ends with 0 only where the window says that the work is done.
#include "Hand.h"

#include "host/browser/BrowserProgram.h"

#include <VelkCommon/Files/SHA1.h>

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <optional>
#include <utility>

namespace {

// As the window's own program does.
[[maybe_unused]] const bool hasLastWords = VelkHost::prepareLastWords();

/// Takes the words of the work, and leaves to the window's program what is its own.
QStringList takeWords(int argumentCount, char** arguments, VelkHost::ProgramOptions& options)
{
    QStringList words;
    for (int i = 1; i < argumentCount; ++i)
        words.append(QString::fromLocal8Bit(arguments[i]));
    if (const auto service = words.indexOf(QStringLiteral("--service")); service >= 0) {
        options.window.service = words.value(service + 1).toStdString();
        words = words.mid(0, service);
    }
    return words;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    VelkHost::ProgramOptions options;
    const QStringList words = takeWords(argumentCount, arguments, options);
    static_cast<void>(
        SHA1::bytesToSHA1Hex({}));  // OpenSSL makes itself ready, which it does not survive without memory
    std::optional<faults::Hand> hand;
    const auto shown = [&](VelkHost::BrowserWindow& window) {
        hand.emplace(window);
        QApplication::setQuitOnLastWindowClosed(false);  // with a code of its own instead
        QTimer::singleShot(0, &window, [&] {
            const faults::Verdict verdict = hand->work(words);
            for (const QString& line : hand->said())
                std::printf("%s\n", line.toUtf8().constData());
            std::fflush(stdout);
            QApplication::exit(static_cast<int>(verdict));
        });
    };
    return VelkHost::runBrowser(argumentCount, arguments, std::move(options), shown);
}
