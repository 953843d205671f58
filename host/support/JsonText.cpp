#include "host/support/JsonText.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace VelkHost {

std::string jsonText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace VelkHost
