#pragma once

#include <functional>

namespace test {

/// Makes the process's QCoreApplication, once.
void ensureApplication();

/// Delivers what is waiting on this thread.
void deliverEvents();

/// Runs `work` on a worker thread and an event loop on this one, until the work has returned and all calls that
/// it sent have left the queue. What throws in it fails the test; a work that does not end gives up.
void runBesideEventLoop(const std::function<void()>& work);

}  // namespace test
