#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <VelkLibrary/UI/ProgressGauge.h>
#include <VelkLibrary/UI/ProgressText.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMetaObject>
#include <QSplitter>

#include <cstdint>
#include <utility>

namespace {

/// For the slots that a worker may call: the widgets are changed on their own thread.
template <typename... Arguments>
void queueCall(QObject* target, const char* slot, Arguments... arguments)
{
    if (target != nullptr)
        QMetaObject::invokeMethod(target, slot, Qt::QueuedConnection, arguments...);
}

int lowest32Bits(size_t value)
{
    return static_cast<int>(static_cast<std::uint32_t>(value));
}

void dock(LibraryProgressPanel* panel, QSplitter* splitter)
{
    splitter->addWidget(panel);
    splitter->setCollapsible(splitter->indexOf(panel), false);
}

}  // namespace

LibraryProgressPanel* LibraryProgressPanel::create(QWidget* parent)
{
    auto* const splitter =
        parent == nullptr ? nullptr : parent->findChild<QSplitter*>(QStringLiteral("libMainSplitter"));
    const QPointer<LibraryProgressPanel> panel = new LibraryProgressPanel(parent);
    for (QLabel* const label : {panel->progressLabel_.data(), panel->rangeLabel_.data()}) {
        label->setText(QString());
        label->repaint();
    }
    panel->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    panel->setFixedHeight(panel->sizeHint().height());
    if (splitter != nullptr)
        dock(panel, splitter);
    return panel;
}

LibraryProgressPanel::LibraryProgressPanel(QWidget* parent)
    : QProgressDialog(parent),
      LibraryProgressBase(static_cast<QObject&>(*this)),
      text_(new ProgressText(this)),
      gauge_(new ProgressGauge(this, text_))
{
    // A progress dialog shows itself after some seconds, unless it is reset.
    setAutoClose(false);
    reset();

    auto* const dialogLabel = new QLabel(this);
    progressLabel_ = new QLabel(this);
    rangeLabel_ = new QLabel(this);
    setLabel(dialogLabel);
    dialogLabel->hide();
    setBar(gauge_);
    setCancelButton(nullptr);
    setObjectName(QStringLiteral("LibraryProgressPanel"));

    // A long text is cut off; it must not widen the browser.
    progressLabel_->setMinimumWidth(1);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(progressLabel_, 0, Qt::AlignLeft);
    row->addWidget(gauge_, 1);
    row->addWidget(rangeLabel_, 0, Qt::AlignRight);
}

LibraryProgressPanel::~LibraryProgressPanel() = default;

QSize LibraryProgressPanel::sizeHint() const
{
    return layout() == nullptr ? QProgressDialog::sizeHint() : layout()->totalSizeHint();
}

void LibraryProgressPanel::onUpdateInGauge()
{
    queueCall(gauge_, "onUpdate");
}

void LibraryProgressPanel::onSetValueInGauge(size_t val)
{
    onSetValueInGauge(lowest32Bits(val));
}

void LibraryProgressPanel::onSetValueInGauge(int val)
{
    queueCall(gauge_, "onSetValue", Q_ARG(int, val));
    queueCall(text_, "onSetValue", Q_ARG(int, val));
}

void LibraryProgressPanel::onSetRangeInGauge(size_t val)
{
    onSetRangeInGauge(lowest32Bits(val));
}

void LibraryProgressPanel::onSetRangeInGauge(int val)
{
    queueCall(gauge_, "onSetRange", Q_ARG(int, val));
    queueCall(text_, "onSetRange", Q_ARG(int, val));
}

void LibraryProgressPanel::onSetText(std::string text)  // NOLINT(performance-unnecessary-value-param)
{
    queueCall(text_, "onSetText", Q_ARG(std::string, text));
}

void LibraryProgressPanel::onSetUnits(std::string unit_string)
{
    if (text_ != nullptr)
        text_->setUnits(std::move(unit_string));
}

void LibraryProgressPanel::setProgressLabelText(QString labelStr)  // NOLINT(performance-unnecessary-value-param)
{
    if (progressLabel_ != nullptr)
        progressLabel_->setText(labelStr);
}

void LibraryProgressPanel::setProgressRangeText(QString rangeStr)  // NOLINT(performance-unnecessary-value-param)
{
    if (rangeLabel_ != nullptr)
        rangeLabel_->setText(rangeStr);
}

void LibraryProgressPanel::resizeEvent(QResizeEvent*) {}

void LibraryProgressPanel::changeEvent(QEvent* event)
{
    QProgressDialog::changeEvent(event);
    if (event->type() == QEvent::StyleChange && layout() != nullptr) {
        layout()->invalidate();
        layout()->activate();
    }
}

void LibraryProgressPanel::showEvent(QShowEvent* event)
{
    // A dialog would look for a place of its own on the screen.
    if (isWindow())
        QProgressDialog::showEvent(event);
}

void LibraryProgressPanel::keyPressEvent(QKeyEvent* event)
{
    // A dialog closes with the escape key.
    if (isWindow())
        QProgressDialog::keyPressEvent(event);
    else
        event->ignore();
}
