#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/ProgressDisplayType.h>

#include <QPointer>
#include <QProgressBar>

class ProgressText;

/// The bar of the progress panel. A click with the left mouse button changes how the progress is described:
/// bar only, percentage, amounts, then again from the start. The choice is kept in preference 236, and the
/// tooltip says what a click does. The click goes on to the widgets behind the bar.
///
/// User-interface thread, like every widget.
class VELKLIBRARY_EXPORT ProgressGauge : public QProgressBar
{
    Q_OBJECT

public:
    /// A gauge from 0 to 100 at 0, that shows no text itself and passes on to `text` what it is told. `text`
    /// may be destroyed before the gauge.
    ProgressGauge(QWidget* panel, ProgressText* text);
    ~ProgressGauge() override;

public Q_SLOTS:
    /// Goes one step further and tells the text object the new value. After the last step, further ones change
    /// nothing.
    void onUpdate();
    /// Shows the value and tells the text object. The bar does not move for a value outside its range.
    void onSetValue(int size);
    /// Makes the gauge `size` steps long, counted from its minimum, and tells the text object. The value stays
    /// if it is still within the gauge.
    void onSetRange(int size);

protected:
    /// Goes to the next display type when the left button is released; the event is ignored in any case.
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void switchDisplayType();
    void refreshToolTip();

    ProgressDisplayType displayType_;
    QPointer<ProgressText> text_;
};
