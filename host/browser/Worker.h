#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace VelkHost {

/// Why `work` threw, as a text for people; empty when it did not throw.
QString failureOf(const std::function<void()>& work);

/// A thread for work that the user interface must not wait for. It runs one job after the other, in the order in
/// which they were given. All operations are called on the user-interface thread.
class Worker : public QObject
{
    Q_OBJECT

public:
    explicit Worker(QObject* parent = nullptr);
    /// Waits for all jobs except dropped ones, as some of them save what the user entered. Nothing arrives any
    /// more.
    ~Worker() override;

    /// Waits as the destructor does.
    void finish() { thread_.waitForDone(); }

    using Arrival = std::function<void()>;
    /// Runs a job on the thread, and then what it returns, if anything, on this object's thread. Where the job throws
    /// std::bad_alloc, `ranOut` takes the place of what it would return; what else it throws goes to the error log, and
    /// nothing arrives.
    void run(std::function<Arrival()> job, Arrival ranOut = {});

    /// Frees something on the thread, in its turn: what holds a million items takes its time. It is never dropped.
    template <typename Data>
    void release(Data data)
    {
        // Emptied rather than let go of, since the thread pool may hold a copy of the function on either thread.
        thread_.start([held = std::make_shared<Data>(std::move(data))] { *held = Data(); });
    }

    /// Drops the jobs that have not begun. The one that has begun still arrives.
    void drop();

    /// Whether a job has not arrived yet; dropped ones count until their turn has come.
    bool isBusy() const { return underWay_ > 0; }

private:
    QThreadPool thread_;
    std::atomic<unsigned> drops_ = 0;
    int underWay_ = 0;
};

}  // namespace VelkHost
