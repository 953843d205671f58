#pragma once

#include <QWidget>

namespace VelkHost {

/// Shows, over a window, that the dragged files can be dropped there.
class DropHighlight : public QWidget
{
    Q_OBJECT

public:
    explicit DropHighlight(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace VelkHost
