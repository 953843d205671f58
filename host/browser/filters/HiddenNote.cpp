#include "host/browser/filters/HiddenNote.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>

namespace VelkHost {

HiddenNote::HiddenNote(QBoxLayout::Direction direction, QWidget* parent)
    : QWidget(parent), text_(new QLabel), showAll_(new QPushButton)
{
    const bool isPage = direction == QBoxLayout::TopToBottom;
    setObjectName(isPage ? QStringLiteral("hiddenPage") : QStringLiteral("hiddenStrip"));
    text_->setObjectName(QStringLiteral("hiddenText"));
    text_->setTextFormat(Qt::PlainText);  // filters are named by anybody
    text_->setWordWrap(true);
    showAll_->setObjectName(QStringLiteral("showAllButton"));
    auto* const layout = new QBoxLayout(direction, this);
    if (isPage) {
        text_->setAlignment(Qt::AlignCenter);
        layout->addStretch(1);
        layout->addWidget(text_);
        layout->addWidget(showAll_, 0, Qt::AlignHCenter);
        layout->addStretch(1);
    } else {
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(text_, 1);
        layout->addWidget(showAll_, 0, Qt::AlignVCenter);
    }
    connect(showAll_, &QPushButton::clicked, this, &HiddenNote::showAllAsked);
    retranslate();
}

void HiddenNote::setText(const QString& text)
{
    text_->setText(text);
}

void HiddenNote::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void HiddenNote::retranslate()
{
    showAll_->setText(tr("Show &All Libraries"));
}

}  // namespace VelkHost
