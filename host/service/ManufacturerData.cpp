#include "host/service/ManufacturerData.h"

#include "host/support/FileError.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Text/TimeText.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>
#include <limits>
#include <set>

namespace VelkHost {
namespace {

constexpr std::size_t dataBytes = std::size_t{64} << 20;  // what clients download

class CardReader
{
public:
    explicit CardReader(const fileString& path) : path_(path) {}

    std::vector<ManufacturerLogo> read()
    {
        const std::string text = readWhole(path_, dataBytes);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
        if (!document.isObject())
            fail({"is not a JSON object (%1)", {error.errorString().toStdString()}});
        const QJsonObject root = document.object();
        if (!root.contains(QStringLiteral("Version")))
            fail("has no \"Version\"; clients would take its texts for Windows-1252");
        requireTime(root, "\"Last_Modified\"");
        if (!root[QStringLiteral("Default_Text")].isString() && root.contains(QStringLiteral("Default_Text")))
            fail("\"Default_Text\" is not a text");
        for (auto member = root.begin(); member != root.end(); ++member)
            if (member.key().startsWith(QStringLiteral("Manufacturer"), Qt::CaseInsensitive))
                readCard(member.key().toStdString(), member.value());
        return std::move(logos_);
    }

private:
    [[noreturn]] void fail(const Reason& reason) const { throw FileError(path_, reason); }

    void requireTime(const QJsonObject& object, const std::string& what) const
    {
        const std::string text = object[QStringLiteral("Last_Modified")].toString().toStdString();
        if (text.empty() || Library::fromString<boost::posix_time::ptime>(text).is_special())
            fail({"%1 is not a time such as 20260301T140559.012345", {what}});
    }

    void readCard(const std::string& key, const QJsonValue& value)
    {
        const std::string where = "\"" + key + "\"";
        const QJsonObject card = value.toObject();
        const double id = card[QStringLiteral("Id")].toDouble(0.5);
        if (!(id >= std::numeric_limits<std::int32_t>::min() && id <= std::numeric_limits<std::int32_t>::max()) ||
            id != static_cast<std::int32_t>(id))
            fail({"%1 is not a card with an \"Id\" of 32 bits", {where}});
        if (!ids_.insert(static_cast<std::int32_t>(id)).second)
            fail({"%1 has the \"Id\" of another card", {where}});
        requireTime(card, where + ".\"Last_Modified\"");
        for (const char* text : {"Name", "Url", "Phone", "Fax", "Email", "Logo"})
            if (const QJsonValue member = card[QLatin1String(text)]; !member.isUndefined() && !member.isString())
                fail({"%1.\"%2\" is not a text", {where, text}});
        if (const QJsonValue member = card[QStringLiteral("Deleted")]; !member.isUndefined() && !member.isBool())
            fail({"%1.\"Deleted\" is neither true nor false", {where}});
        std::string logo = card[QStringLiteral("Logo")].toString().toStdString();
        if (logo.empty() || card[QStringLiteral("Deleted")].toBool())
            return;
        logos_.push_back({card[QStringLiteral("Name")].toString().toStdString(), std::move(logo)});
    }

    fileString path_;
    std::vector<ManufacturerLogo> logos_;
    std::set<std::int32_t> ids_;
};

}  // namespace

std::vector<ManufacturerLogo> readManufacturerLogos(const fileString& path)
{
    return CardReader(path).read();
}

}  // namespace VelkHost
