#include "host/browser/manufacturers/ManufacturerStore.h"

#include "host/browser/language/Reasons.h"
#include "host/installation/DataError.h"
#include "host/support/QtText.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Text/StringConvert.h>

#include <QBuffer>
#include <QByteArray>
#include <QFileInfo>
#include <QImageReader>
#include <QList>
#include <QUrl>

#include <memory>
#include <utility>

namespace VelkHost {
namespace {

constexpr std::size_t logoBytes = std::size_t{8} << 20;
constexpr int largestLogoSide = 4096;  // a small file can claim to be a huge picture
constexpr int logosKept = 64;

QString shown(const std::u32string& text)
{
    return StringConvert::toQString(text);
}

ManufacturerCard manufacturerCard(long id, const Manufacturer& card, const std::u32string& defaultText)
{
    const auto line = [&](const std::u32string& stored, bool isDefault) {
        return ManufacturerCard::Line{shown(stored), shown(isDefault ? defaultText : stored), isDefault};
    };
    return {id,
            shown(card.getManufacturerName()),
            shown(card.getManufacturerUrl()),
            line(card.getManufacturerPhoneNumber(false), card.isPhoneDefaulted()),
            line(card.getManufacturerFaxNumber(false), card.isFaxDefaulted()),
            line(card.getManufacturerEmail(false), card.isEmailDefaulted()),
            qtText(card.getManufacturerLogoName().utf8()),
            card.isDeleted()};
}

ManufacturerBook readBook()
{
    const ManufacturerFile file = installedManufacturers();
    std::vector<ManufacturerCard> cards;
    cards.reserve(file.cards.size());
    for (const auto& [id, card] : file.cards)
        cards.push_back(manufacturerCard(id, card, file.defaultText));
    return {std::move(cards), shown(file.defaultText)};
}

QImage decodedLogo(const std::string& bytes, const QSize& atMost)
{
    const QByteArray array = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    QBuffer buffer;
    buffer.setData(array);
    QImageReader reader(&buffer);
    // Other formats can refer to files, or take long.
    const QList<QByteArray> formats{"png", "jpeg", "gif", "bmp"};
    const QSize size = reader.size();
    if (!formats.contains(reader.format()) || size.isEmpty() || size.width() > largestLogoSide ||
        size.height() > largestLogoSide)
        return {};
    const QImage image = reader.read();
    const bool fits = image.width() <= atMost.width() && image.height() <= atMost.height();
    return fits ? image : image.scaled(atMost, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// The logo of that name in the data folder. A link is not followed: anybody may write there, and it leads elsewhere.
QImage readLogo(const std::string& name, const QSize& atMost)
{
    const Manufacturer card({}, {}, {}, {}, fileString(name), {}, false, {});
    if (!hasLogoFile(card))
        return {};
    const fileString path(card.getManufacturerFullLogoName());
    if (QFileInfo(qtText(path.utf8())).isSymLink())
        return {};
    QImage image;
    failureOf([&] { image = decodedLogo(readWhole(path, logoBytes), atMost); });
    return image;
}

QString logoKey(const QString& name, const QSize& atMost)
{
    return QStringLiteral("%1x%2/%3").arg(atMost.width()).arg(atMost.height()).arg(name);
}

}  // namespace

ManufacturerAddresses manufacturerAddresses(const std::string& service)
{
    const QUrl url(qtText(service));
    const auto beside = [&](const char* name) {
        return url.resolved(QUrl(QString::fromLatin1(name))).toEncoded().toStdString();
    };
    return {beside("manufacturers"), beside("logo?v=1")};
}

ManufacturerStore::ManufacturerStore(QObject* parent) : QObject(parent) {}

ManufacturerStore::~ManufacturerStore()
{
    stop_.request_stop();
}

void ManufacturerStore::finish()
{
    stop_.request_stop();
    worker_.finish();
}

void ManufacturerStore::read()
{
    run([] {}, [] {}, [this](const QString& reason) { Q_EMIT unreadable(reason); });
}

void ManufacturerStore::edit(long id, const CardEdit& edit)
{
    run([id, edit] { editCard(id, edit); }, [this] { Q_EMIT edited(); },
        [this](const QString& reason) { Q_EMIT editFailed(reason); });
}

void ManufacturerStore::refresh(const std::string& service)
{
    const auto outcome = std::make_shared<ManufacturerRefresh>();
    const auto work = [service, outcome, stop = stop_.get_token()] {
        if (!Curl::downloadable(service))
            throw DataError(Reason("\"%1\" is not a web address", {WebUtils::withoutUserInfo(service)}));
        const ManufacturerAddresses addresses = manufacturerAddresses(service);
        *outcome = refreshManufacturers(addresses.data, addresses.logos, stop);
    };
    run(
        work, [this, outcome] { Q_EMIT refreshed(*outcome); },
        [this](const QString& reason) { Q_EMIT refreshFailed(reason); });
}

// What is to arrive is made before the work, so that work that was done is not told as failed for want of memory.
void ManufacturerStore::run(const std::function<void()>& work, const Outcome& succeeded,
                            const std::function<void(const QString&)>& failed)
{
    struct Result
    {
        QString failure;
        QString unread;
        ManufacturerBook book;
    };
    auto job = [this, work, succeeded, failed]() -> Worker::Arrival {
        const auto result = std::make_shared<Result>();
        Worker::Arrival arrival = [this, result, succeeded, failed] {
            if (!result->failure.isEmpty())
                return failed(result->failure);
            if (result->unread.isEmpty())
                take(result->book);
            succeeded();
            if (!result->unread.isEmpty())
                Q_EMIT unreadable(result->unread);
        };
        result->failure = failureOf(work);
        if (result->failure.isEmpty())
            result->unread = failureOf([&] { result->book = readBook(); });
        return arrival;
    };
    worker_.run(std::move(job), [failed] { failed(tooLittleMemory()); });
}

void ManufacturerStore::take(const ManufacturerBook& book)
{
    book_ = book;
    logos_.clear();
    Q_EMIT changed();
}

QImage ManufacturerStore::logo(const ManufacturerCard& card, const QSize& atMost)
{
    if (card.logo.isEmpty())
        return {};
    const QString key = logoKey(card.logo, atMost);
    if (const auto known = logos_.constFind(key); known != logos_.constEnd())
        return *known;
    if (logos_.size() >= logosKept)
        logos_.clear();
    logos_.insert(key, {});
    worker_.run([this, key, name = card.logo.toStdString(), atMost]() -> Worker::Arrival {
        const QImage image = readLogo(name, atMost);
        return [this, key, image] {
            logos_[key] = image;
            Q_EMIT logosChanged();
        };
    });
    return {};
}

}  // namespace VelkHost
