#include "VelkLibrary/UI/Application.h"

#include "support/EventLoop.h"

#include <gmock/gmock.h>

namespace test {

Application& Application::running()
{
    return static_cast<Application&>(*QCoreApplication::instance());
}

void Application::deliverEvents()
{
    // A call that another call sends waits for the next turn. A value goes to the panel, from there to the
    // gauge, to the text, to the label, and last to the layout.
    constexpr int longestWay = 8;
    for (int turn = 0; turn < longestWay; ++turn)
        processEvents();
}

void Application::runBesideEventLoop(const std::function<void()>& work)
{
    test::runBesideEventLoop(work);
    deliverEvents();
}

}  // namespace test

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // This object is never destroyed: Qt's platform without a display would leak its screen, which the leak
    // sanitizer reports.
    static auto& application = *new test::Application(argc, argv);
    static_cast<void>(application);
    return RUN_ALL_TESTS();
}
