#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <functional>

namespace VelkHost {

/// Why `work` threw, as a text for people; empty when it did not.
QString failureOf(const std::function<void()>& work);

/// A thread for work on one of the installation's data files: a job after the other, in the order in which
/// they were given. The user-interface thread's.
class DataThread : public QObject
{
    Q_OBJECT

public:
    explicit DataThread(QObject* parent = nullptr);
    /// Waits for all jobs, as some of them save what the user entered; nothing arrives any more.
    ~DataThread() override;

    using Arrival = std::function<void()>;
    /// Runs a job, which must not throw, on the thread, and then what it returns on this object's thread.
    void run(std::function<Arrival()> job);

    /// A job has not arrived yet.
    bool isBusy() const { return underWay_ > 0; }

private:
    QThreadPool thread_;
    int underWay_ = 0;
};

}  // namespace VelkHost
