#include "support/EventLoop.h"

#include "support/EventLoopLimit.h"
#include "support/Threads.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>

#include <exception>

#ifdef __GNUC__

// Called by the thread sanitizer only. Neither Qt nor the library under its event loops is built with it, so it does
// not see their locks and takes accesses under them for races.
extern "C" const char* __tsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "called_from_lib:libQt5Core.so\n"
           "called_from_lib:libQt5Gui.so\n"
           "called_from_lib:libQt5Widgets.so\n"
           "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6Gui.so\n"
           "called_from_lib:libQt6Widgets.so\n"
           "called_from_lib:libglib-2.0.so\n";
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

void ensureApplication()
{
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
}

void deliverEvents()
{
    QCoreApplication::sendPostedEvents();
}

void runBesideEventLoop(const std::function<void()>& work)
{
    QEventLoop loop;
    LoopEnd end(loop);
    const EventLoopLimit limit("the work beside the event loop does not end");
    Thread worker([&] {
        try {
            work();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the worker threw: " << error.what();
        }
        QCoreApplication::postEvent(&end, new QEvent(QEvent::User));
    });
    loop.exec();
    worker.join();
    deliverEvents();
}

}  // namespace test
