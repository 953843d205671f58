#pragma once

#include "host/browser/jobs/ImportPlan.h"
#include "host/browser/jobs/LibraryJob.h"

#include <VelkCommon/Files/fileString.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <cstddef>
#include <memory>
#include <vector>

class LibraryProgressPanel;
class QAction;
class QMainWindow;
class QMessageBox;
class QToolButton;

namespace VelkHost {

/// The jobs of the browser's window, one at a time: their actions, the progress panel with its cancel button
/// below the QSplitter "libMainSplitter", and the outcome in the status bar. A window that is closed while a job runs
/// cancels the job and closes when that has ended, or after a moment: the unpacking of a library cannot be stopped.
class LibraryJobs : public QObject
{
    Q_OBJECT

public:
    /// `window` has its splitter and outlives the object.
    explicit LibraryJobs(QMainWindow& window);
    /// Cancels a running job and waits for it.
    ~LibraryJobs() override;

    /// Import, check for updates, cancel: for a menu.
    QList<QAction*> actions() const { return {import_, update_, cancel_}; }

    /// The content service's address; without one there is nothing to update from.
    void setService(const QString& address);

    bool isRunning() const { return job_ != nullptr; }

    /// Whether openFiles() has room for so many files, and the window is not closing.
    bool mayOpen(std::size_t files) const;

public Q_SLOTS:
    void checkForUpdates();
    /// Asks for files to import.
    void chooseImports();
    /// Imports ".calibz" and ".calib" files; asks first when libraries of their names are installed. Does nothing while
    /// a job runs, or while the user is asked.
    void importFiles(const QStringList& files);
    /// Imports them as soon as no job runs and the user is not asked.
    void openFiles(const QStringList& files);
    /// Cancels a running job.
    void cancel();

Q_SIGNALS:
    void runningChanged(bool running);
    /// A catalog file was added or replaced; `imported` tells an import from an update.
    void libraryInstalled(const fileString& library, bool imported);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void start(std::unique_ptr<LibraryJob> job, bool imports);
    void openWaiting();
    void startImport(std::vector<ImportSource> sources);
    void askToReplace(std::vector<ImportSource> sources, const QStringList& names);
    void buildPanel();
    void end(const JobOutcome& outcome);
    void showProblems(const QStringList& problems);
    void openErrorLog();
    void enableActions();
    void retranslate();

    QMainWindow& window_;
    QAction* const import_;
    QAction* const update_;
    QAction* const cancel_;
    QToolButton* const errorLog_;
    QString service_;
    QPointer<LibraryProgressPanel> panel_;
    QPointer<QMessageBox> problemBox_;
    QStringList problems_;  // in the box
    QStringList waiting_;   // files to open
    std::unique_ptr<LibraryJob> job_;
    bool asking_ = false;
    QTimer closing_;          ///< runs while the window, which the user has closed, waits for the job
    bool hasWaited_ = false;  ///< long enough: the window closes before the job has ended
};

}  // namespace VelkHost
