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
    QStringList problems;    ///< what went wrong with what the user gave, a sentence for each
    bool hasLogged = false;  ///< the error log tells more
};

/// A job of the browser's window that takes its time: it works on threads of its own, while its progress shows in a
/// panel. Made and asked on the user-interface thread, where its signals come. Its destructor cancels
/// what is still under way and waits for it.
class LibraryJob : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~LibraryJob() override;

    /// Begins; called once.
    virtual void start(LibraryProgressPanel& panel) = 0;
    /// Asks it to end soon. ended() comes all the same.
    virtual void cancel() = 0;

Q_SIGNALS:
    /// The file of a library was added or replaced.
    void installed(const fileString& library);
    /// The last signal.
    void ended(const VelkHost::JobOutcome& outcome);

protected:
    /// Runs `call` on this object's thread; dropped when the object ends first. Any thread.
    void post(std::function<void()> call);
};

}  // namespace VelkHost
