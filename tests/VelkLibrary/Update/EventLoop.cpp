#include "VelkLibrary/Update/EventLoop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>

#include <atomic>
#include <exception>
#include <memory>
#include <thread>

#ifdef __GNUC__

// Asked for by the thread sanitizer, never called in other builds. Qt is not built with it, so it does not see
// the locks of Qt's event queue and takes the growing of its list for a race.
extern "C" const char* __tsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "called_from_lib:libQt5Core.so\n";
}

#endif

namespace test {
namespace {

// Ends the loop after all that was posted before. Qt's own queued call would do; but the thread sanitizer does
// not see what happens in Qt, so it takes for a race what no code of ours orders.
class LoopEnd : public QObject
{
public:
    explicit LoopEnd(QEventLoop& loop) : loop_(loop) {}

    void post()
    {
        auto event = std::make_unique<QEvent>(QEvent::User);
        posted_.store(true, std::memory_order_release);
        QCoreApplication::postEvent(this, event.release());
    }

protected:
    void customEvent(QEvent*) override
    {
        if (posted_.load(std::memory_order_acquire))
            loop_.quit();
    }

private:
    QEventLoop& loop_;
    std::atomic<bool> posted_{false};
};

}  // namespace

void ensureApplication()
{
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
}

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
        end.post();
    });
    loop.exec();
    worker.join();
    deliverEvents();
}

void deliverEvents()
{
    QCoreApplication::sendPostedEvents();
}

}  // namespace test
