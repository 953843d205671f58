#include "host/browser/tree/ItemDrag.h"

#include "host/installation/ItemJson.h"
#include "host/support/QtText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>

namespace VelkHost {

QMimeData* dragOf(const fileString& library, const Catalog& catalog, std::size_t item, const QPixmap& picture)
{
    const Item& dragged = catalog.items[item];
    QJsonObject object{{QStringLiteral("library"), qtText(library.utf8())},
                       {QStringLiteral("id"), qtText(dragged.uniqueId)},
                       {QStringLiteral("name"), qtText(dragged.name)}};
    addKnown(catalog, item, object);
    auto* const data = new QMimeData;
    data->setText(qtText(dragged.name));
    data->setData(QString::fromLatin1(itemMimeType), QJsonDocument(object).toJson(QJsonDocument::Compact));
    if (!picture.isNull())
        data->setImageData(picture.toImage());
    return data;
}

}  // namespace VelkHost
