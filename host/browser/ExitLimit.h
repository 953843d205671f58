#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace VelkHost {

/// The longest time that a program which its user has closed goes on. Whatever a worker is in the middle of then is
/// left as a kill would leave it: the next start removes and repairs it.
class ExitLimit
{
public:
    ExitLimit() = default;
    /// What was under way has ended in time.
    ~ExitLimit();
    ExitLimit(const ExitLimit&) = delete;
    ExitLimit& operator=(const ExitLimit&) = delete;

    /// Ends the process with this code after `limit`, unless the object is destroyed before. Called once; where there
    /// can be no thread to watch the time, the program ends when its workers do.
    void start(int exitCode, std::chrono::milliseconds limit) noexcept;

private:
    void watch(int exitCode, std::chrono::milliseconds limit);

    std::mutex mutex_;
    std::condition_variable changed_;
    bool hasEnded_ = false;
    std::thread watch_;
};

}  // namespace VelkHost
