#include "host/browser/manufacturers/ManufacturerPane.h"

#include "host/browser/manufacturers/ManufacturerEditor.h"

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

ManufacturerPane::ManufacturerPane(ManufacturerStore& store, QWidget* parent)
    : QWidget(parent),
      store_(store),
      title_(cardLabel("manufacturerTitle")),
      logo_(cardLabel("manufacturerLogo")),
      name_(cardLabel("manufacturerName")),
      withdrawn_(cardLabel("manufacturerWithdrawn")),
      edit_(new QPushButton)
{
    setObjectName(QStringLiteral("manufacturerPane"));
    QFont heading = font();
    heading.setBold(true);
    name_->setFont(heading);
    name_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit_->setObjectName(QStringLiteral("editManufacturerButton"));
    buildLayout();
    connect(edit_, &QPushButton::clicked, this, &ManufacturerPane::edit);
    connect(&store_, &ManufacturerStore::changed, this, &ManufacturerPane::showCard);
    connect(&store_, &ManufacturerStore::logosChanged, this, &ManufacturerPane::showLogo);
    retranslate();
    showCard();
}

void ManufacturerPane::buildLayout()
{
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    auto* const form = new QFormLayout;
    form->setContentsMargins(0, 0, 0, 0);
    phone_ = addRow(form, "manufacturerPhone");
    fax_ = addRow(form, "manufacturerFax");
    email_ = addRow(form, "manufacturerEmail");
    url_ = addRow(form, "manufacturerUrl");
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

ManufacturerPane::Row ManufacturerPane::addRow(QFormLayout* form, const char* objectName)
{
    auto* const title = new QLabel;
    const Row row{title, cardLabel(objectName)};
    form->addRow(row.title, row.value);
    connect(row.value, &QLabel::linkActivated, this,
            [](const QString& link) { QDesktopServices::openUrl(QUrl::fromEncoded(link.toLatin1())); });
    return row;
}

void ManufacturerPane::show(std::shared_ptr<const Catalog> library, std::size_t item)
{
    library_ = std::move(library);
    item_ = item;
    showCard();
}

const ManufacturerCard* ManufacturerPane::card() const
{
    return id_ ? store_.book().card(*id_) : nullptr;
}

void ManufacturerPane::edit()
{
    if (const ManufacturerCard* const shownCard = card()) {
        auto* const editor = new ManufacturerEditor(store_, *shownCard, this);
        editor->setAttribute(Qt::WA_DeleteOnClose);
        editor->open();
    }
}

void ManufacturerPane::showCard()
{
    const bool isItem = library_ != nullptr && item_ < library_->items.size();
    const ManufacturerCard* const manufacturer =
        isItem ? store_.book().manufacturerOf(*library_, library_->items[item_]) : nullptr;
    id_ = manufacturer == nullptr ? std::nullopt : std::optional(manufacturer->id);
    setVisible(manufacturer != nullptr);
    if (manufacturer != nullptr) {
        name_->setText(manufacturer->name);
        withdrawn_->setVisible(manufacturer->deleted);
        const auto showRow = [](const Row& row, const QString& text, const QUrl& target) {
            row.title->setVisible(!text.isEmpty());
            row.value->setVisible(!text.isEmpty());
            setLink(row.value, text, target);
        };
        showRow(phone_, manufacturer->phone.shown, {});
        showRow(fax_, manufacturer->fax.shown, {});
        showRow(email_, manufacturer->email.shown, mailAddress(manufacturer->email.shown));
        showRow(url_, manufacturer->url, webAddress(manufacturer->url));
        showLogo();
    }
    Q_EMIT shown();
}

void ManufacturerPane::setPixelRatio(qreal ratio)
{
    pixelRatio_ = ratio;
    showLogo();
}

void ManufacturerPane::showLogo()
{
    const ManufacturerCard* const manufacturer = card();
    const QSize pixels = logoSize * pixelRatio_;
    QPixmap pixmap = manufacturer == nullptr ? QPixmap() : QPixmap::fromImage(store_.logo(*manufacturer, pixels));
    pixmap.setDevicePixelRatio(pixelRatio_);
    logo_->setPixmap(pixmap);
    logo_->setVisible(!pixmap.isNull());
}

void ManufacturerPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ManufacturerPane::retranslate()
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
