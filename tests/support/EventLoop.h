#pragma once

#include <functional>

namespace test {

/// Makes the process's QCoreApplication, once.
void ensureApplication();

/// Delivers the events that are waiting on this thread.
void deliverEvents();

/// Runs `work` on a worker thread and an event loop on this one, until the work has returned and all calls that
/// it sent have left the queue. An exception in it fails the test; if it does not end, the program gives up.
void runBesideEventLoop(const std::function<void()>& work);

}  // namespace test
