#include "host/browser/tree/ThumbnailCache.h"

#include "host/browser/jobs/InstalledFiles.h"
#include "host/catalog/CatalogItems.h"
#include "host/support/FileError.h"
#include "host/support/QtText.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <shared_mutex>
#include <utility>

namespace VelkHost {
namespace {

constexpr int kilobytesKept = 96 * 1024;
constexpr std::size_t mostWanted = 512;  // a few screens full
constexpr std::size_t picturesAtOnce = 32;
constexpr int largestSide = 4096;  // a small file can claim to be a huge picture

/// The picture in a PNG file, made to fit into a square; null for other bytes. Small pictures are not
/// enlarged.
QImage decoded(const std::string& png, int side)
{
    if (png.empty())
        return {};
    const QByteArray bytes = QByteArray::fromRawData(png.data(), static_cast<int>(png.size()));
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > largestSide || size.height() > largestSide)
        return {};
    QImage image = reader.read();
    if (image.width() <= side && image.height() <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

int kilobytes(const QPixmap& pixmap)
{
    return 1 + pixmap.width() * pixmap.height() / 256;
}

}  // namespace

QString ThumbnailKey::text() const
{
    const QChar separator(u'\n');
    return QString::number(side) + separator + qtText(library.utf8()) + separator + qtText(uniqueId);
}

ThumbnailCache::ThumbnailCache(QObject* parent) : QObject(parent), pixmaps_(kilobytesKept) {}

QPixmap ThumbnailCache::find(const ThumbnailKey& key)
{
    if (const QPixmap* const pixmap = pixmaps_.object(keptName(key)))
        return *pixmap;
    const QString text = key.text();
    if (asked_.contains(text))
        return {};
    asked_.insert(text);
    wanted_.push_front(key);
    if (wanted_.size() > mostWanted) {
        asked_.remove(wanted_.back().text());
        wanted_.pop_back();
    }
    if (!reading_)
        readNext();
    return {};
}

void ThumbnailCache::forget(const fileString& library)
{
    ++versions_[library];
}

QString ThumbnailCache::keptName(const ThumbnailKey& key) const
{
    const auto version = versions_.find(key.library);
    return QString::number(version == versions_.end() ? 0U : version->second) + u'\n' + key.text();
}

void ThumbnailCache::readNext()
{
    const auto end = wanted_.begin() + static_cast<std::ptrdiff_t>(std::min(picturesAtOnce, wanted_.size()));
    std::vector<Request> requests;
    std::transform(wanted_.begin(), end, std::back_inserter(requests), [this](const ThumbnailKey& key) {
        return Request{key, keptName(key)};
    });
    wanted_.erase(wanted_.begin(), end);
    reading_ = !requests.empty();
    if (!reading_)
        return;
    auto job = [this, requests]() -> Worker::Arrival {
        return [this, pictures = read(requests)] {
            for (const Picture& picture : pictures)
                asked_.remove(picture.request.key.text());
            take(pictures);
            readNext();
            Q_EMIT changed();
        };
    };
    worker_.run(std::move(job), [this] { readNext(); });  // those without a picture stay so
}

void ThumbnailCache::take(const std::vector<Picture>& pictures)
{
    for (const Picture& picture : pictures) {
        auto pixmap = std::make_unique<QPixmap>(QPixmap::fromImage(picture.image));
        const int cost = kilobytes(*pixmap);
        pixmaps_.insert(picture.request.kept, pixmap.release(), cost);
    }
}

// On the worker. Each library's file is open only during this call, so that it can be replaced afterwards.
std::vector<ThumbnailCache::Picture> ThumbnailCache::read(const std::vector<Request>& requests)
{
    std::vector<Picture> pictures;
    const std::shared_lock reading(installedFiles());
    std::unique_ptr<CatalogItems> open;
    fileString openPath;
    for (const Request& request : requests) {
        const ThumbnailKey& key = request.key;
        Picture& picture = pictures.emplace_back(Picture{request, {}});
        try {
            if (open == nullptr || openPath != key.library) {
                open.reset();
                open = std::make_unique<CatalogItems>(key.library);
                openPath = key.library;
            }
            picture.image = decoded(open->png(key.uniqueId), key.side);
        } catch (const FileError&) {
            open.reset();  // an item without a picture
        } catch (const std::bad_alloc&) {
            open.reset();
        }
    }
    return pictures;
}

}  // namespace VelkHost
