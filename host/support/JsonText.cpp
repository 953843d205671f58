#include "host/support/JsonText.h"

#include <VelkCommon/Text/StringConvert.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace VelkHost {

QString qtText(std::string_view text)
{
    return StringConvert::toQString(text, StringConvert::Utf8);
}

std::string jsonText(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace VelkHost
