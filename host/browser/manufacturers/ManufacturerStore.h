#pragma once

#include "host/browser/Worker.h"
#include "host/browser/manufacturers/ManufacturerBook.h"
#include "host/installation/ManufacturerRefresh.h"
#include "host/installation/Manufacturers.h"

#include <QImage>
#include <QMap>
#include <QObject>
#include <QSize>

#include <functional>
#include <stop_token>
#include <string>
#include <utility>

namespace VelkHost {

/// The addresses at which a content service has the manufacturers' data and their logos.
struct ManufacturerAddresses
{
    std::string data;
    std::string logos;
};
/// The addresses below a service's address, such as "http://127.0.0.1:8080/".
ManufacturerAddresses manufacturerAddresses(const std::string& service);

/// The installation's manufacturers, read, saved and brought up to date in the background. Used on the
/// user-interface thread only.
class ManufacturerStore : public QObject
{
    Q_OBJECT

public:
    explicit ManufacturerStore(QObject* parent = nullptr);
    /// Ends a refresh under way, and waits until changes are saved.
    ~ManufacturerStore() override;

    const ManufacturerBook& book() const { return book_; }

    /// Ends in changed() or unreadable().
    void read();
    /// Changes a card; ends in edited(), or in editFailed().
    void edit(long id, const CardEdit& edit);
    /// Ends in refreshed(), or in refreshFailed().
    void refresh(const std::string& service);

    /// The logo of a card, at most of this size in pixels; null when the card has none. It is also null while the
    /// logo has not been read: then reading begins, and logosChanged() follows.
    QImage logo(const ManufacturerCard& card, const QSize& atMost);

    bool isBusy() const { return worker_.isBusy(); }
    /// Waits as the destructor does. No refresh is possible any more.
    void finish();

Q_SIGNALS:
    /// The cards were read; comes before what tells of an edit or a refresh.
    void changed();
    /// The cards cannot be read, so they are known as they were; comes after what tells of an edit or a refresh.
    void unreadable(const QString& reason);
    void edited();
    void editFailed(const QString& reason);
    void refreshed(const VelkHost::ManufacturerRefresh& refresh);
    void refreshFailed(const QString& reason);
    void logosChanged();

private:
    using Outcome = std::function<void()>;
    void take(const ManufacturerBook& book);
    void run(const std::function<void()>& work, const Outcome& succeeded,
             const std::function<void(const QString&)>& failed);

    ManufacturerBook book_;
    QMap<QString, QImage> logos_;  // null: there is none, or it has not been read
    std::stop_source stop_;
    Worker worker_;
};

}  // namespace VelkHost
