#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/LibraryProgressBase.h>

#include <QPointer>
#include <QProgressDialog>
#include <QString>

#include <cstddef>
#include <string>

class ProgressGauge;
class ProgressText;
class QLabel;

/// A slim strip that shows the progress of a long job below the browser: what is being done, a bar, and how
/// much is done. A progress dialog that is part of a window instead of being one; it does not show itself.
///
///     auto* const panel = LibraryProgressPanel::create(browserWindow);
///     LibraryCatalogUpdate::LibraryCatalogUpdater updater(*panel, ...);   // the panel as the receiver
///     // or, for a job of the host's own:
///     std::thread worker([progress = panel->progressHandle()] { progress.sendRange(3); ... });
///
/// A worker that uses such a handle may outlive the panel. The slots for jobs may also be called directly, from
/// any thread, by a caller that knows that the panel lives; they only queue calls to the widgets, in the order
/// made. Everything else belongs to the user-interface thread.
///
/// A value or range reaches the text twice, once directly and once through the gauge; that is harmless.
class VELKLIBRARY_EXPORT LibraryProgressPanel : public QProgressDialog, public LibraryProgressBase
{
    Q_OBJECT

public:
    /// Makes a panel and puts it below everything else in the QSplitter named "libMainSplitter" somewhere in
    /// `parent`, as a section of fixed height that cannot be collapsed. Without such a splitter the panel is
    /// made, but not placed. Owned by the splitter, else by `parent`, else (null) by the caller.
    static LibraryProgressPanel* create(QWidget* parent);

    /// A panel that has no place yet. A browser wants create() instead.
    explicit LibraryProgressPanel(QWidget* parent = nullptr);
    ~LibraryProgressPanel() override;

    /// The handle that a worker reports with. It can be copied; what is sent after the panel was destroyed is
    /// dropped.
    LibraryProgressBase progressHandle() const { return static_cast<const LibraryProgressBase&>(*this); }

    /// The size of the strip.
    QSize sizeHint() const override;

public Q_SLOTS:
    // What a job reports, by the names that LibraryProgressBase sends. Texts are UTF-8.

    /// One step is done.
    void onUpdateInGauge();
    /// `val` steps are done. Only the lowest 32 bits count.
    void onSetValueInGauge(size_t val);
    /// `val` steps are done.
    void onSetValueInGauge(int val);
    /// A gauge of `val` steps starts. Only the lowest 32 bits count.
    void onSetRangeInGauge(size_t val);
    /// A gauge of `val` steps starts.
    void onSetRangeInGauge(int val);
    /// What is being done. Bytes that are not UTF-8 are read as Windows-1252, because the catalog update sends
    /// file names so.
    void onSetText(std::string text);
    /// The unit of the steps, stored at once and shown with the next change.
    void onSetUnits(std::string unit_string);

    /// Shows what is being done, left of the bar. User-interface thread.
    void setProgressLabelText(QString labelStr);
    /// Shows how much is done, right of the bar. User-interface thread.
    void setProgressRangeText(QString rangeStr);

protected:
    /// Does nothing: a progress dialog arranges its label and bar by itself, but here a layout does.
    void resizeEvent(QResizeEvent* event) override;
    /// Arranges everything anew after a change of style.
    void changeEvent(QEvent* event) override;
    /// Keeps the panel where it was put; a dialog would look for a place on the screen.
    void showEvent(QShowEvent* event) override;
    /// Leaves keys to the window: the escape key would hide a dialog.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPointer<ProgressText> text_;
    QPointer<ProgressGauge> gauge_;
    QPointer<QLabel> progressLabel_;
    QPointer<QLabel> rangeLabel_;
};
