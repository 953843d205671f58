#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/ProgressDisplayType.h>

#include <QObject>
#include <QString>

#include <mutex>
#include <string>

class LibraryProgressPanel;

/// Turns a job's value, range and text into the two texts of the progress panel. It shows nothing itself.
///
/// Its slots are called by name, as queued calls, by the panel and by the gauge. Both tell it each value
/// and range, so everything comes twice; a slot only stores what it is told, describes the progress anew and
/// emits both signals. Lives on the panel's thread.
class VELKLIBRARY_EXPORT ProgressText : public QObject
{
    Q_OBJECT

public:
    /// Owned by `panel`, whose labels show what is emitted. Takes the display type from preference 236.
    explicit ProgressText(LibraryProgressPanel* panel);
    ~ProgressText() override;

    /// The unit of the amounts (UTF-8), such as "KB"; empty for none. Shown with the next change of anything
    /// else. Any thread.
    void setUnits(std::string units);

Q_SIGNALS:
    /// What is being done.
    void setLabelText(QString labelText);
    /// How much of it is done, in the form that the display type asks for.
    void setRangeText(QString rangeText);

private Q_SLOTS:
    void onPauseProcess();
    void onResumeProcess();
    void onSwitchDisplayType(ProgressDisplayType dispType);
    void onSetValue(int val);
    void onSetRange(int val);
    void onSetText(std::string text);

private:
    void describe();
    std::string percentageText() const;
    std::string amountsText() const;
    std::string units() const;

    ProgressDisplayType displayType_;
    int value_ = 0;
    int range_ = 0;
    bool paused_ = false;
    std::string text_;
    std::string rangeText_;
    std::string units_;  // guarded by unitsMutex_; the rest belongs to this object's thread
    mutable std::mutex unitsMutex_;
};
