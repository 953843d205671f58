#include "host/browser/DetailPane.h"

#include "host/browser/tree/ShownSize.h"
#include "host/support/QtText.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

namespace VelkHost {
namespace {

constexpr int largePictureSide = 192;

QLabel* textLabel(const char* objectName)
{
    auto* const label = new QLabel;
    label->setObjectName(QString::fromLatin1(objectName));
    label->setTextFormat(Qt::PlainText);  // libraries come from anybody
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

QStringList namesOf(const Catalog& catalog, std::size_t folder)
{
    QStringList names(qtText(catalog.name));
    for (const std::string& name : catalog.folderPath(folder))
        names.append(qtText(name));
    return names;
}

}  // namespace

DetailPane::DetailPane(ThumbnailCache& thumbnails, QWidget* parent)
    : QWidget(parent),
      thumbnails_(thumbnails),
      pictureLabel_(new QLabel),
      name_(textLabel("detailName")),
      where_(textLabel("detailPlace")),
      size_(textLabel("detailSize")),
      keywords_(textLabel("detailKeywords")),
      choose_(new QPushButton),
      extras_(new QVBoxLayout)
{
    setObjectName(QStringLiteral("detailPane"));
    QFont heading = font();
    heading.setPointSizeF(heading.pointSizeF() * 1.3);
    heading.setBold(true);
    name_->setFont(heading);
    where_->setForegroundRole(QPalette::PlaceholderText);
    pictureLabel_->setObjectName(QStringLiteral("detailPicture"));
    pictureLabel_->setAlignment(Qt::AlignCenter);
    pictureLabel_->setMinimumHeight(largePictureSide + 16);
    choose_->setObjectName(QStringLiteral("chooseButton"));

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(pictureLabel_);
    layout->addWidget(name_);
    layout->addWidget(where_);
    layout->addWidget(size_);
    layout->addWidget(keywords_);
    layout->addWidget(choose_, 0, Qt::AlignLeft);
    layout->addLayout(extras_);
    layout->addStretch(1);
    connect(choose_, &QPushButton::clicked, this, &DetailPane::chosen);
    connect(&thumbnails_, &ThumbnailCache::changed, this, &DetailPane::showPicture);
    retranslate();
    show(nullptr, {});
}

void DetailPane::show(const BrowsedLibrary* library, const LibraryPlace& place)
{
    picture_.reset();
    const bool isItem = library != nullptr && !place.isFolder;
    choose_->setVisible(isItem);
    keywords_->setVisible(isItem);
    name_->clear();
    size_->clear();
    where_->clear();
    if (isItem) {
        const Item& item = library->catalog->items[place.index];
        name_->setText(qtText(item.name));
        where_->setText(namesOf(*library->catalog, item.folder).join(QStringLiteral(" \u203A ")));
        keywords_->setText(qtText(item.keywords));
        size_->setText(shownSize(library->catalog->sizeOf(place.index)));
        picture_ = ThumbnailKey{library->path, item.uniqueId, pictureSide()};
    } else if (library != nullptr) {
        const Folder& folder = library->catalog->folders[place.index];
        name_->setText(qtText(folder.name));
        where_->setText(folder.parent == Folder::noParent
                            ? qtText(library->catalog->name)
                            : namesOf(*library->catalog, folder.parent).join(QStringLiteral(" \u203A ")));
    }
    size_->setVisible(!size_->text().isEmpty());
    showPicture();
}

void DetailPane::setPixelRatio(qreal ratio)
{
    pixelRatio_ = ratio;
    if (picture_)
        picture_->side = pictureSide();
    showPicture();
}

int DetailPane::pictureSide() const
{
    return static_cast<int>(largePictureSide * pixelRatio_);
}

void DetailPane::showPicture()
{
    QPixmap pixmap = picture_ ? thumbnails_.find(*picture_) : QPixmap();
    pixmap.setDevicePixelRatio(pixelRatio_);
    pictureLabel_->setPixmap(pixmap);
}

void DetailPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void DetailPane::retranslate()
{
    choose_->setText(tr("&Choose"));
    choose_->setToolTip(tr("Place this item in the drawing"));
    pictureLabel_->setAccessibleName(tr("Picture"));
    name_->setAccessibleName(tr("Name"));
    where_->setAccessibleName(tr("Place"));
    keywords_->setAccessibleName(tr("Keywords"));
}

}  // namespace VelkHost
