#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/ProgressDisplayType.h>

#include <QPointer>
#include <QProgressBar>

class ProgressText;

/// The bar of the progress panel. A click with the left mouse button changes how the progress is described:
/// bar only, percentage, amounts, and again from the start. The choice is kept in preference 236, and the
/// tooltip says what a click does. The click goes on to the widgets behind the bar.
///
/// User-interface thread, like every widget.
class VELKLIBRARY_EXPORT ProgressGauge : public QProgressBar
{
    Q_OBJECT

public:
    /// A gauge from 0 to 100 at 0, without a text of its own, that tells `text` what it is told. `text`
    /// may be destroyed before the gauge.
    ProgressGauge(QWidget* panel, ProgressText* text);
    ~ProgressGauge() override;

public Q_SLOTS:
    /// One step further, which the text object is told as a value. The last step is the end: further ones
    /// change nothing.
    void onUpdate();
    /// Shows the value and tells the text object. The bar does not move for a value outside of its range.
    void onSetValue(int size);
    /// Makes the gauge `size` steps long, counted from its minimum, and tells the text object. The value stays,
    /// as far as the gauge reaches.
    void onSetRange(int size);

protected:
    /// Goes to the next display type with the left button; the event is ignored in any case.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void switchDisplayType();
    void refreshToolTip();

    ProgressDisplayType displayType_;
    QPointer<ProgressText> text_;
};
