#pragma once

#include <functional>

namespace test {

/// Runs `work` on a worker thread and an event loop on this one, until the work has returned and all calls that
/// it sent have left the queue. What throws in it fails the test.
void runBesideEventLoop(const std::function<void()>& work);

}  // namespace test
