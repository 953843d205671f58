#include "host/browser/filters/KindMenu.h"

#include "host/support/QtText.h"

#include <QEvent>
#include <QSignalBlocker>

namespace VelkHost {

KindMenu::KindMenu(QWidget* parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("kindMenu"));
    for (const LibraryKind kind : {LibraryKind::Core, LibraryKind::Bonus, LibraryKind::Manufacturer, LibraryKind::User})
        kinds_[kind] = addKind(kind);
    retranslate();
}

std::set<LibraryKind> KindMenu::hidden() const
{
    std::set<LibraryKind> hidden;
    for (const auto& [kind, action] : kinds_)
        if (!action->isChecked())
            hidden.insert(kind);
    return hidden;
}

void KindMenu::setHidden(const std::set<LibraryKind>& kinds)
{
    if (kinds == hidden())
        return;
    for (const auto& [kind, action] : kinds_) {
        const QSignalBlocker once(this);
        action->setChecked(!kinds.contains(kind));
    }
    Q_EMIT changed();
}

QAction* KindMenu::addKind(LibraryKind kind)
{
    QAction* const action = addAction(QString());
    action->setObjectName(qtText(kindName(kind)) + QStringLiteral("KindAction"));
    action->setCheckable(true);
    action->setChecked(true);
    connect(action, &QAction::toggled, this, &KindMenu::changed);
    return action;
}

void KindMenu::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMenu::changeEvent(event);
}

void KindMenu::retranslate()
{
    setTitle(tr("&Kinds"));
    kinds_[LibraryKind::Core]->setText(tr("&Core Libraries"));
    kinds_[LibraryKind::Bonus]->setText(tr("&Bonus Libraries"));
    kinds_[LibraryKind::Manufacturer]->setText(tr("&Manufacturers' Libraries"));
    kinds_[LibraryKind::User]->setText(tr("&Your Own Libraries"));
}

}  // namespace VelkHost
