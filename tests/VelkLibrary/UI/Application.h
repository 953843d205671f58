#pragma once

#include <QApplication>

#include <functional>
#include <mutex>

namespace test {

/// The application object of these tests; main() makes it.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    /// The one that runs.
    static Application& running();

    /// Delivers what is waiting for this thread, and what that sends in turn.
    static void deliverEvents();

    /// Runs `work` on a worker thread and an event loop on this one, until the work has returned and all
    /// that it sent is delivered.
    static void runBesideEventLoop(const std::function<void()>& work);

    /// For a call on a worker that queues events. Qt orders what comes before the queueing and after the
    /// delivery by a lock of its own, which the thread sanitizer does not see; this is one that it sees.
    void queue(const std::function<void()>& call);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    std::mutex queueing_;
};

}  // namespace test
