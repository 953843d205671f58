#pragma once

#include <QBoxLayout>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

namespace VelkHost {

/// Why nothing is to be seen, though there are libraries, and a button that shows them all.
class HiddenNote : public QWidget
{
    Q_OBJECT

public:
    /// `direction` for a strip (LeftToRight) or a whole page (TopToBottom).
    explicit HiddenNote(QBoxLayout::Direction direction, QWidget* parent = nullptr);

    void setText(const QString& text);

Q_SIGNALS:
    /// Everything is to be shown.
    void showAllAsked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QLabel* const text_;
    QPushButton* const showAll_;
};

}  // namespace VelkHost
