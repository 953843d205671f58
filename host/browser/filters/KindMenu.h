#pragma once

#include "host/catalog/Catalog.h"

#include <QMenu>

#include <map>
#include <set>

namespace VelkHost {

/// The kinds of library, each to be shown or not; all are shown at first.
class KindMenu : public QMenu
{
    Q_OBJECT

public:
    explicit KindMenu(QWidget* parent = nullptr);

    std::set<LibraryKind> hidden() const;
    void setHidden(const std::set<LibraryKind>& kinds);

Q_SIGNALS:
    void changed();

protected:
    void changeEvent(QEvent* event) override;

private:
    QAction* addKind(LibraryKind kind);
    void retranslate();

    std::map<LibraryKind, QAction*> kinds_;
};

}  // namespace VelkHost
