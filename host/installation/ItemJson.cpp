#include "host/installation/ItemJson.h"

#include "host/support/QtText.h"

#include <QJsonObject>

#include <cmath>

namespace VelkHost {
namespace {

void addText(const QString& name, const std::string& text, QJsonObject& object)
{
    if (!text.empty())
        object.insert(name, qtText(text));
}

}  // namespace

QJsonObject sizeJson(const ItemSize& size)
{
    QJsonObject object;
    const auto add = [&](const QString& name, float millimetres) {
        if (millimetres > 0)  // to a hundredth, as they are kept: 50.2 is no 50.2000007
            object.insert(name, std::round(static_cast<double>(millimetres) * 100) / 100);
    };
    add(QStringLiteral("width"), size.width);
    add(QStringLiteral("depth"), size.depth);
    add(QStringLiteral("height"), size.height);
    return object;
}

void addKnown(const Catalog& catalog, std::size_t item, QJsonObject& object)
{
    if (const ItemSize size = catalog.sizeOf(item); size.isKnown())
        object.insert(QStringLiteral("size"), sizeJson(size));
    const ItemProperties& known = catalog.propertiesOf(item);
    addText(QStringLiteral("creator"), known.creator, object);
    addText(QStringLiteral("licence"), known.licence, object);
    addText(QStringLiteral("price"), known.price, object);
    addText(QStringLiteral("currency"), known.currency, object);
    QJsonObject details;
    for (const ItemDetail& detail : known.details)
        details.insert(qtText(detail.name), qtText(detail.value));
    if (!details.isEmpty())
        object.insert(QStringLiteral("details"), details);
}

}  // namespace VelkHost
