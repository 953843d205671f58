#include "host/browser/jobs/LibraryJobs.h"

#include "host/browser/jobs/ImportJob.h"
#include "host/browser/jobs/UpdateJob.h"
#include "host/support/QtText.h"

#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <QAction>
#include <QDesktopServices>
#include <QEvent>
#include <QFileDialog>
#include <QLayout>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QUrl>

#include <chrono>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::chrono::milliseconds closingPatience{1'200};  // with a job that is to end
constexpr std::size_t mostWaitingFiles = 10'000;
constexpr int mostShownProblems = 10;  // a box with more of them may be larger than the screen

QAction* newAction(QObject* parent, const char* objectName, const QKeySequence& shortcut)
{
    auto* const action = new QAction(parent);
    action->setObjectName(QString::fromLatin1(objectName));
    action->setShortcut(shortcut);
    return action;
}

/// A message box that does not hold up its caller.
QMessageBox* newBox(QWidget& window, const char* objectName, QMessageBox::Icon icon, const QString& text)
{
    auto* const box = new QMessageBox(icon, window.windowTitle(), text, QMessageBox::NoButton, &window);
    box->setObjectName(QString::fromLatin1(objectName));
    box->setTextFormat(Qt::PlainText);  // files come from anybody
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

}  // namespace

LibraryJobs::LibraryJobs(QMainWindow& window)
    : QObject(&window),
      window_(window),
      import_(newAction(this, "importAction", QKeySequence(QStringLiteral("Ctrl+I")))),
      update_(newAction(this, "updateAction", Qt::Key_F5)),
      cancel_(newAction(this, "cancelAction", Qt::Key_Escape)),
      errorLog_(new QToolButton(&window))
{
    // On some systems the second key has another use in the search box.
    update_->setShortcuts({Qt::Key_F5, QKeySequence(QStringLiteral("Ctrl+U"))});
    errorLog_->setObjectName(QStringLiteral("errorLogButton"));
    errorLog_->setAutoRaise(true);
    errorLog_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    errorLog_->setIcon(window.style()->standardIcon(QStyle::SP_MessageBoxWarning));
    errorLog_->hide();
    window.statusBar()->addPermanentWidget(errorLog_);
    window.addActions(actions());
    window.installEventFilter(this);
    connect(import_, &QAction::triggered, this, &LibraryJobs::chooseImports);
    connect(update_, &QAction::triggered, this, &LibraryJobs::checkForUpdates);
    connect(cancel_, &QAction::triggered, this, &LibraryJobs::cancel);
    connect(errorLog_, &QToolButton::clicked, this, &LibraryJobs::openErrorLog);
    closing_.setSingleShot(true);
    closing_.setInterval(closingPatience);
    connect(&closing_, &QTimer::timeout, this, [this] {
        hasWaited_ = true;
        window_.close();
    });
    retranslate();
    enableActions();
}

LibraryJobs::~LibraryJobs() = default;

void LibraryJobs::setService(const QString& address)
{
    service_ = address;
    retranslate();
    enableActions();
}

void LibraryJobs::checkForUpdates()
{
    if (!service_.isEmpty())
        start(std::make_unique<UpdateJob>(service_.toStdString()), false);
}

void LibraryJobs::chooseImports()
{
    auto* const dialog = new QFileDialog(&window_, tr("Import Libraries"));
    dialog->setObjectName(QStringLiteral("importDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters({tr("Libraries (*.calibz *.calib)"), tr("All files (*)")});
    connect(dialog, &QFileDialog::filesSelected, this, &LibraryJobs::openFiles);
    dialog->open();
}

bool LibraryJobs::mayOpen(std::size_t files) const
{
    return !closing_.isActive() && static_cast<std::size_t>(waiting_.size()) + files <= mostWaitingFiles;
}

void LibraryJobs::openFiles(const QStringList& files)
{
    waiting_ += files;
    waiting_.removeDuplicates();
    openWaiting();
}

void LibraryJobs::openWaiting()
{
    if (!isRunning() && !asking_)
        importFiles(std::exchange(waiting_, {}));
}

void LibraryJobs::importFiles(const QStringList& files)
{
    if (isRunning() || asking_ || files.isEmpty())
        return;
    std::vector<ImportSource> sources = importSources(files);
    const QStringList names = importedAlready(sources);
    if (names.isEmpty())
        startImport(std::move(sources));
    else
        askToReplace(std::move(sources), names);
}

void LibraryJobs::cancel()
{
    if (!isRunning())
        return;
    job_->cancel();
    cancel_->setEnabled(false);
    panel_->onSetText(tr("Cancelling…").toStdString());
}

// The job ends first, then the window; but the user does not wait longer than a moment.
bool LibraryJobs::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    if (event->type() == QEvent::Close)
        waiting_.clear();
    if (event->type() != QEvent::Close || !isRunning() || hasWaited_)
        return QObject::eventFilter(watched, event);
    if (!closing_.isActive())
        closing_.start();
    cancel();
    event->ignore();
    return true;
}

void LibraryJobs::start(std::unique_ptr<LibraryJob> job, bool imports)
{
    if (isRunning())
        return;
    job_ = std::move(job);
    connect(job_.get(), &LibraryJob::installed, this,
            [this, imports](const fileString& library) { Q_EMIT libraryInstalled(library, imports); });
    connect(job_.get(), &LibraryJob::ended, this, &LibraryJobs::end);
    errorLog_->hide();
    window_.statusBar()->clearMessage();
    buildPanel();
    enableActions();
    Q_EMIT runningChanged(true);
    job_->start(*panel_);
}

void LibraryJobs::startImport(std::vector<ImportSource> sources)
{
    if (!sources.empty())
        start(std::make_unique<ImportJob>(std::move(sources)), true);
}

void LibraryJobs::askToReplace(std::vector<ImportSource> sources, const QStringList& names)
{
    const QString text =
        names.size() == 1
            ? tr("You already have a library “%1”. Replace it?").arg(names.front())
            : tr("You already have these libraries: %1. Replace them?").arg(names.join(tr(", ", "between names")));
    QMessageBox* const box = newBox(window_, "replaceQuestion", QMessageBox::Question, text);
    QPushButton* const replace = box->addButton(tr("&Replace"), QMessageBox::DestructiveRole);
    replace->setObjectName(QStringLiteral("replaceButton"));
    QPushButton* const skip = static_cast<int>(sources.size()) > names.size()
                                  ? box->addButton(tr("&Skip"), QMessageBox::AcceptRole)
                                  : nullptr;
    if (skip != nullptr)
        skip->setObjectName(QStringLiteral("skipButton"));
    box->setDefaultButton(box->addButton(QMessageBox::Cancel));
    asking_ = true;
    enableActions();
    connect(box, &QDialog::finished, this, [this, box, replace, skip, sources = std::move(sources)]() mutable {
        asking_ = false;
        enableActions();
        const QAbstractButton* const clicked = box->clickedButton();
        if (clicked != nullptr && (clicked == replace || clicked == skip)) {
            clicked == replace ? replaceImported(sources) : skipImported(sources);
            startImport(std::move(sources));
        }
        openWaiting();
    });
    box->open();
}

// A new one for each job: a panel keeps the units of its gauge.
void LibraryJobs::buildPanel()
{
    panel_ = LibraryProgressPanel::create(&window_);
    auto* const button = new QPushButton(tr("Ca&ncel"));
    button->setObjectName(QStringLiteral("cancelButton"));
    button->setAccessibleName(tr("Cancel what is running"));
    button->setToolTip(cancel_->toolTip());
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, cancel_, &QAction::trigger);
    connect(cancel_, &QAction::changed, button, [this, button] { button->setEnabled(cancel_->isEnabled()); });
    panel_->setAccessibleName(tr("Progress"));
    panel_->layout()->setContentsMargins(8, 0, 8, 4);
    panel_->layout()->addWidget(button);
    panel_->setFixedHeight(panel_->sizeHint().height());
    if (auto* const splitter = qobject_cast<QSplitter*>(panel_->parentWidget()))
        splitter->handle(splitter->indexOf(panel_))->setEnabled(false);  // the panel's height is fixed
    panel_->onSetRangeInGauge(0);                                        // busy, until the range is known
    panel_->show();
}

void LibraryJobs::end(const JobOutcome& outcome)
{
    job_.release()->deleteLater();
    delete panel_;
    enableActions();
    window_.statusBar()->showMessage(outcome.message);
    errorLog_->setVisible(outcome.hasLogged);
    Q_EMIT runningChanged(false);
    hasWaited_ = false;
    const bool closes = closing_.isActive();
    closing_.stop();
    if (closes) {
        window_.close();
        return;
    }
    if (!outcome.problems.isEmpty())
        showProblems(outcome.problems);
    openWaiting();
}

// A box that is still open takes those of the next import as well.
void LibraryJobs::showProblems(const QStringList& problems)
{
    const bool isOpen = problemBox_ != nullptr && problemBox_->isVisible();
    problems_ = isOpen ? problems_ + problems : problems;
    const int more = static_cast<int>(problems_.size()) - mostShownProblems;
    QString text = problems_.mid(0, mostShownProblems).join(QStringLiteral("\n\n"));
    if (more > 0)
        text += QStringLiteral("\n\n") + tr("There were %Ln more problems.", nullptr, more);
    if (!isOpen) {
        problemBox_ = newBox(window_, "problemBox", QMessageBox::Warning, {});
        problemBox_->setStandardButtons(QMessageBox::Ok);
    }
    problemBox_->setText(text);
    problemBox_->setDetailedText(more > 0 ? problems_.join(QStringLiteral("\n\n")) : QString());
    problemBox_->open();
}

void LibraryJobs::openErrorLog()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(qtText(Library::ErrorLog::file().utf8())));
}

void LibraryJobs::enableActions()
{
    import_->setEnabled(!isRunning() && !asking_);
    update_->setEnabled(!isRunning() && !asking_ && !service_.isEmpty());
    cancel_->setEnabled(isRunning());
}

void LibraryJobs::retranslate()
{
    import_->setText(tr("&Import…"));
    import_->setToolTip(tr("Add libraries from files (.calibz) to your own"));
    update_->setText(tr("&Check for Updates"));
    update_->setToolTip(service_.isEmpty()
                            ? tr("There is no content service to update from: start the program with --service URL")
                            : tr("Bring the installed libraries up to date from %1").arg(service_));
    cancel_->setText(tr("Ca&ncel"));
    cancel_->setToolTip(tr("Cancel what is running (Esc)"));
    errorLog_->setText(tr("Error Lo&g"));
    errorLog_->setToolTip(tr("Open the log that tells what went wrong"));
    errorLog_->setAccessibleName(tr("Error log"));
}

}  // namespace VelkHost
