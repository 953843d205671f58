#pragma once

#include "host/browser/manufacturers/ManufacturerStore.h"

#include <QMenu>

#include <string>

namespace VelkHost {

class ManufacturerPane;

/// What can be done with the manufacturers' cards.
class ManufacturerMenu : public QMenu
{
    Q_OBJECT

public:
    /// `service` is the content service's address; without one there is nothing to refresh from.
    ManufacturerMenu(ManufacturerStore& store, ManufacturerPane& pane, const std::string& service,
                     QWidget* parent = nullptr);

Q_SIGNALS:
    /// Something to tell the user.
    void told(const QString& message);

protected:
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void tellRefresh(const ManufacturerRefresh& refresh);
    void retranslate();

    ManufacturerStore& store_;
    const std::string service_;
    QAction* const refresh_;
    QAction* const edit_;
};

}  // namespace VelkHost
