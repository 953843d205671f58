#include "support/QtThreads.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>

#include <exception>
#include <thread>

#ifdef __GNUC__

// Asked for by the thread sanitizer, never called in other builds. Qt is not built with it, so it does not see
// Qt's locks and takes what happens under them for races.
extern "C" const char* __tsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "called_from_lib:libQt5Core.so\n"
           "called_from_lib:libQt5Gui.so\n"
           "called_from_lib:libQt5Widgets.so\n";
}

#endif

namespace test {
namespace {

class LoopEnd : public QObject
{
public:
    explicit LoopEnd(QEventLoop& loop) : loop_(loop) {}

protected:
    void customEvent(QEvent*) override { loop_.quit(); }

private:
    QEventLoop& loop_;
};

}  // namespace

void runBesideEventLoop(const std::function<void()>& work)
{
    QEventLoop loop;
    LoopEnd end(loop);
    std::thread worker([&] {
        try {
            work();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the worker threw: " << error.what();
        }
        QCoreApplication::postEvent(&end, new QEvent(QEvent::User));
    });
    loop.exec();
    worker.join();
    QCoreApplication::sendPostedEvents();
}

}  // namespace test
