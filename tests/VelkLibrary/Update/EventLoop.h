#pragma once

#include <functional>

namespace test {

/// Makes the process's QCoreApplication, once.
void ensureApplication();

/// Runs `work` on a worker thread and an event loop on this one, until the work has returned and all
/// calls that it sent are delivered.
void runBesideEventLoop(const std::function<void()>& work);

/// Delivers what is waiting on this thread.
void deliverEvents();

}  // namespace test
