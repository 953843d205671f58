#pragma once

#include "support/EventLoopLimit.h"

#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

namespace bench {

/// Waits until a widget is painted.
class PaintWaiter : public QObject
{
public:
    explicit PaintWaiter(QWidget* painted) { painted->installEventFilter(this); }

    /// From here on paints count.
    void arm() { painted_ = false; }

    /// Waits until the widget is painted while `ready` holds.
    template <typename Ready>
    void wait(Ready ready)
    {
        const test::EventLoopLimit limit("the window does not get ready");
        while (!painted_ || !ready()) {
            painted_ = false;
            loop_.exec();
        }
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !painted_) {
            painted_ = true;
            QTimer::singleShot(0, &loop_, &QEventLoop::quit);  // once the paint is done
        }
        return false;
    }

private:
    QEventLoop loop_;
    bool painted_ = false;
};

}  // namespace bench
