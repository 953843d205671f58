#pragma once

#include <QApplication>

#include <functional>

namespace test {

/// The application object of these tests; main() makes it.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    /// The application object of this process.
    static Application& running();

    /// Delivers what is waiting for this thread, and whatever that sends in turn.
    static void deliverEvents();

    /// Runs `work` on a worker thread and an event loop on this one, until the work has returned and everything
    /// that it sent is delivered.
    static void runBesideEventLoop(const std::function<void()>& work);
};

}  // namespace test
