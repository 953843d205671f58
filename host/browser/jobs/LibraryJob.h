#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class LibraryProgressPanel;

namespace VelkHost {

/// What the user is told when a job has ended.
struct JobOutcome
{
    QString message;         ///< one line
    QStringList problems;    ///< what went wrong with the user's files, a sentence for each
    bool hasLogged = false;  ///< the error log tells more
};

/// A job of the browser's window that takes its time: it works on its own threads, while its progress shows in a
/// panel. It is made and called on the user-interface thread, where its signals come. Its destructor cancels
/// what is still under way and waits for it.
class LibraryJob : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~LibraryJob() override;

    /// Begins the job; called once.
    virtual void start(LibraryProgressPanel& panel) = 0;
    /// Asks the job to end soon. ended() comes all the same.
    virtual void cancel() = 0;

Q_SIGNALS:
    /// A catalog file was added or replaced.
    void installed(const fileString& library);
    /// The last signal.
    void ended(const VelkHost::JobOutcome& outcome);

protected:
    /// Runs `call` on this object's thread; drops it if the object is destroyed first. Any thread.
    void post(std::function<void()> call);
};

}  // namespace VelkHost
