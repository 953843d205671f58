#pragma once

#include "host/browser/Worker.h"

#include <VelkCommon/Files/fileString.h>

#include <QCache>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QString>

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace VelkHost {

/// A picture of an item, in the size in which a view shows it.
struct ThumbnailKey
{
    fileString library;
    std::string uniqueId;
    int side = 0;  ///< of the square that it fits into, in the screen's pixels

    QString text() const;
};

/// The items' pictures, read in the background when a view first asks for them. The picture that was asked for
/// last comes first, and requests that scrolled by long ago are dropped, so a view that is scrolled fast never
/// waits. Used on the user-interface thread only.
class ThumbnailCache : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailCache(QObject* parent = nullptr);

    /// The picture; null when the item has none. It is also null while the picture has not been read: then reading
    /// begins, and changed() follows.
    QPixmap find(const ThumbnailKey& key);

    /// Forgets the pictures of a library, whose file was replaced. Takes the same time however many pictures are kept.
    void forget(const fileString& library);

    /// Whether anything asked for is still under way.
    bool isBusy() const { return reading_ || !wanted_.empty(); }

Q_SIGNALS:
    /// Pictures have been read; views paint again what they show.
    void changed();

private:
    /// A picture that was asked for.
    struct Request
    {
        ThumbnailKey key;
        QString kept;  // the name under which the picture will be kept
    };
    struct Picture
    {
        Request request;
        QImage image;
    };

    QString keptName(const ThumbnailKey& key) const;
    void readNext();
    void take(const std::vector<Picture>& pictures);
    static std::vector<Picture> read(const std::vector<Request>& requests);

    QCache<QString, QPixmap> pixmaps_;         // null: there is none
    std::map<fileString, unsigned> versions_;  // how often a library was replaced; older pictures are not found
    std::deque<ThumbnailKey> wanted_;          // the newest in front
    QSet<QString> asked_;                      // the keys that are wanted or being read
    bool reading_ = false;
    Worker worker_;
};

}  // namespace VelkHost
