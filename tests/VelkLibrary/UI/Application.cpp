#include "VelkLibrary/UI/Application.h"

#include <gmock/gmock.h>

#include <QEvent>
#include <QEventLoop>

#include <exception>
#include <thread>

#ifdef __GNUC__

// Asked for by the sanitizers, never called in other builds.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions();

// The font library, which Qt's platform loads, keeps its tables when the process ends.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

// Qt is not built with the thread sanitizer, so it does not see the locks of Qt's event queue and takes the
// growing of its list for a race.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "called_from_lib:libQt5Core.so\n";
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

Application& Application::running()
{
    return static_cast<Application&>(*QCoreApplication::instance());
}

void Application::deliverEvents()
{
    // A call that is sent by a call waits for the next turn. A value comes to the panel, from there to the
    // gauge, to the text, to the label, and last to the layout.
    constexpr int longestWay = 8;
    for (int turn = 0; turn < longestWay; ++turn)
        processEvents();
}

void Application::runBesideEventLoop(const std::function<void()>& work)
{
    QEventLoop loop;
    LoopEnd end(loop);
    std::thread worker([&] {
        try {
            work();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the worker threw: " << error.what();
        }
        running().queue([&end] { postEvent(&end, new QEvent(QEvent::User)); });
    });
    loop.exec();
    worker.join();
    deliverEvents();
}

void Application::queue(const std::function<void()>& call)
{
    const std::lock_guard lock(queueing_);
    call();
}

bool Application::notify(QObject* receiver, QEvent* event)
{
    {
        const std::lock_guard lock(queueing_);
    }
    return QApplication::notify(receiver, event);
}

}  // namespace test

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Not destroyed: Qt's platform without a display loses its screen then, which the leak sanitizer minds.
    static auto& application = *new test::Application(argc, argv);
    static_cast<void>(application);
    return RUN_ALL_TESTS();
}
