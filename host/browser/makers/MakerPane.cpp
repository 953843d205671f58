#include "host/browser/makers/MakerPane.h"

#include "host/browser/makers/MakerEditor.h"

#include <QDesktopServices>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace VelkHost {
namespace {

constexpr QSize logoSize(160, 64);

QLabel* cardLabel(const char* objectName)
{
    auto* const label = new QLabel;
    label->setObjectName(QString::fromLatin1(objectName));
    label->setTextFormat(Qt::PlainText);  // cards come from a service
    label->setWordWrap(true);
    return label;
}

/// Shows a text, as a link when it leads somewhere.
void setLink(QLabel* label, const QString& text, const QUrl& target)
{
    label->setTextFormat(target.isEmpty() ? Qt::PlainText : Qt::RichText);
    label->setText(target.isEmpty()
                       ? text
                       : QStringLiteral("<a href=\"%1\">%2</a>")
                             .arg(QString::fromLatin1(target.toEncoded()).toHtmlEscaped(), text.toHtmlEscaped()));
    label->setTextInteractionFlags(target.isEmpty() ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                                    : Qt::TextBrowserInteraction);
}

}  // namespace

QUrl webAddress(const QString& text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return isWeb && !url.host().isEmpty() && url.isValid() ? url : QUrl();
}

QUrl mailAddress(const QString& text)
{
    static const QRegularExpression address(QStringLiteral("\\A[^\\s@,;:?&<>\"]+@[^\\s@,;:?&<>\"]+\\z"));
    if (!address.match(text.trimmed()).hasMatch())
        return {};
    QUrl url;
    url.setScheme(QStringLiteral("mailto"));
    url.setPath(text.trimmed(), QUrl::DecodedMode);
    return url;
}

MakerPane::MakerPane(MakerStore& store, QWidget* parent)
    : QWidget(parent),
      store_(store),
      title_(cardLabel("makerTitle")),
      logo_(cardLabel("makerLogo")),
      name_(cardLabel("makerName")),
      withdrawn_(cardLabel("makerWithdrawn")),
      edit_(new QPushButton)
{
    setObjectName(QStringLiteral("makerPane"));
    QFont heading = font();
    heading.setBold(true);
    name_->setFont(heading);
    name_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit_->setObjectName(QStringLiteral("editMakerButton"));
    buildLayout();
    connect(edit_, &QPushButton::clicked, this, &MakerPane::edit);
    connect(&store_, &MakerStore::changed, this, &MakerPane::showCard);
    connect(&store_, &MakerStore::logosChanged, this, &MakerPane::showLogo);
    retranslate();
    showCard();
}

void MakerPane::buildLayout()
{
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    auto* const form = new QFormLayout;
    form->setContentsMargins(0, 0, 0, 0);
    phone_ = addRow(form, "makerPhone");
    fax_ = addRow(form, "makerFax");
    email_ = addRow(form, "makerEmail");
    url_ = addRow(form, "makerUrl");
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 8, 0, 0);
    layout->addWidget(line);
    layout->addWidget(title_);
    layout->addWidget(logo_);
    layout->addWidget(name_);
    layout->addWidget(withdrawn_);
    layout->addLayout(form);
    layout->addWidget(edit_, 0, Qt::AlignLeft);
}

MakerPane::Row MakerPane::addRow(QFormLayout* form, const char* objectName)
{
    auto* const title = new QLabel;
    const Row row{title, cardLabel(objectName)};
    form->addRow(row.title, row.value);
    connect(row.value, &QLabel::linkActivated, this,
            [](const QString& link) { QDesktopServices::openUrl(QUrl::fromEncoded(link.toLatin1())); });
    return row;
}

void MakerPane::show(std::shared_ptr<const Catalog> library, std::size_t item)
{
    library_ = std::move(library);
    item_ = item;
    showCard();
}

const MakerCard* MakerPane::card() const
{
    return id_ ? store_.book().card(*id_) : nullptr;
}

void MakerPane::edit()
{
    if (const MakerCard* const shownCard = card()) {
        auto* const editor = new MakerEditor(store_, *shownCard, this);
        editor->setAttribute(Qt::WA_DeleteOnClose);
        editor->open();
    }
}

void MakerPane::showCard()
{
    const bool isItem = library_ != nullptr && item_ < library_->items.size();
    const MakerCard* const maker = isItem ? store_.book().makerOf(*library_, library_->items[item_]) : nullptr;
    id_ = maker == nullptr ? std::nullopt : std::optional(maker->id);
    setVisible(maker != nullptr);
    if (maker != nullptr) {
        name_->setText(maker->name);
        withdrawn_->setVisible(maker->deleted);
        const auto showRow = [](const Row& row, const QString& text, const QUrl& target) {
            row.title->setVisible(!text.isEmpty());
            row.value->setVisible(!text.isEmpty());
            setLink(row.value, text, target);
        };
        showRow(phone_, maker->phone.shown, {});
        showRow(fax_, maker->fax.shown, {});
        showRow(email_, maker->email.shown, mailAddress(maker->email.shown));
        showRow(url_, maker->url, webAddress(maker->url));
        showLogo();
    }
    Q_EMIT shown();
}

void MakerPane::setPixelRatio(qreal ratio)
{
    pixelRatio_ = ratio;
    showLogo();
}

void MakerPane::showLogo()
{
    const MakerCard* const maker = card();
    const QSize pixels = logoSize * pixelRatio_;
    QPixmap pixmap = maker == nullptr ? QPixmap() : QPixmap::fromImage(store_.logo(*maker, pixels));
    pixmap.setDevicePixelRatio(pixelRatio_);
    logo_->setPixmap(pixmap);
    logo_->setVisible(!pixmap.isNull());
}

void MakerPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void MakerPane::retranslate()
{
    title_->setText(tr("Manufacturer"));
    withdrawn_->setText(tr("This manufacturer was withdrawn."));
    edit_->setText(tr("Edit Ca&rd..."));
    logo_->setAccessibleName(tr("Logo"));
    name_->setAccessibleName(tr("Manufacturer"));
    for (const auto& [row, title] : {std::pair(phone_, tr("Phone")), std::pair(fax_, tr("Fax")),
                                     std::pair(email_, tr("E-mail")), std::pair(url_, tr("Web"))}) {
        row.title->setText(title);
        row.value->setAccessibleName(title);
    }
}

}  // namespace VelkHost
