#pragma once

#include <QBoxLayout>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

namespace VelkHost {

/// Tells why no libraries are seen although there are some, with a button that shows them all.
class HiddenNote : public QWidget
{
    Q_OBJECT

public:
    /// `direction` for a strip (LeftToRight) or a whole page (TopToBottom).
    explicit HiddenNote(QBoxLayout::Direction direction, QWidget* parent = nullptr);

    void setText(const QString& text);

Q_SIGNALS:
    /// The user asks to see everything.
    void showAllAsked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QLabel* const text_;
    QPushButton* const showAll_;
};

}  // namespace VelkHost
