#include "host/browser/manufacturers/ManufacturerMenu.h"

#include "host/browser/manufacturers/ManufacturerPane.h"

#include <QEvent>

#include <algorithm>

namespace VelkHost {
namespace {

int changesOf(const ManufacturerRefresh& refresh, CardChange::Kind kind)
{
    return static_cast<int>(std::count_if(refresh.changes.begin(), refresh.changes.end(),
                                          [kind](const CardChange& change) { return change.kind == kind; }));
}

}  // namespace

ManufacturerMenu::ManufacturerMenu(ManufacturerStore& store, ManufacturerPane& pane, const std::string& service,
                                   QWidget* parent)
    : QMenu(parent), store_(store), service_(service), refresh_(addAction(QString())), edit_(addAction(QString()))
{
    setObjectName(QStringLiteral("manufacturerMenu"));
    refresh_->setObjectName(QStringLiteral("refreshManufacturersAction"));
    refresh_->setEnabled(!service_.empty());
    edit_->setObjectName(QStringLiteral("editManufacturerAction"));
    edit_->setEnabled(false);
    connect(refresh_, &QAction::triggered, this, &ManufacturerMenu::refresh);
    connect(edit_, &QAction::triggered, &pane, &ManufacturerPane::edit);
    connect(&pane, &ManufacturerPane::shown, this, [this, &pane] { edit_->setEnabled(pane.card() != nullptr); });
    connect(&store_, &ManufacturerStore::refreshed, this, &ManufacturerMenu::tellRefresh);
    connect(&store_, &ManufacturerStore::refreshFailed, this, [this](const QString& reason) {
        refresh_->setEnabled(true);
        Q_EMIT told(tr("The manufacturers are as they were: %1").arg(reason));
    });
    connect(&store_, &ManufacturerStore::unreadable, this,
            [this](const QString& reason) { Q_EMIT told(tr("The manufacturers cannot be read: %1").arg(reason)); });
    retranslate();
}

void ManufacturerMenu::refresh()
{
    refresh_->setEnabled(false);
    Q_EMIT told(tr("Asking the content service for the manufacturers..."));
    store_.refresh(service_);
}

void ManufacturerMenu::tellRefresh(const ManufacturerRefresh& refresh)
{
    using Outcome = ManufacturerRefresh::Outcome;
    using Kind = CardChange::Kind;
    refresh_->setEnabled(true);
    QString text = tr("The manufacturers are up to date.");
    if (refresh.outcome == Outcome::Newer)
        text = tr("The service has nothing newer about the manufacturers.");
    else if (refresh.outcome == Outcome::Stopped)
        text = tr("The refresh was stopped. The manufacturers are as they were.");
    else if (refresh.outcome == Outcome::Updated)
        text = tr("Manufacturers: %L1 new, %L2 changed, %L3 gone.")
                   .arg(changesOf(refresh, Kind::Added))
                   .arg(changesOf(refresh, Kind::Changed))
                   .arg(changesOf(refresh, Kind::Removed));
    if (refresh.missingLogos > 0)
        text += u' ' + tr("%Ln logo(s) could not be fetched.", nullptr, static_cast<int>(refresh.missingLogos));
    Q_EMIT told(text);
}

void ManufacturerMenu::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMenu::changeEvent(event);
}

void ManufacturerMenu::retranslate()
{
    setTitle(tr("&Manufacturers"));
    refresh_->setText(tr("&Refresh Manufacturers"));
    refresh_->setStatusTip(service_.empty() ? tr("No content service is set; start with --service URL") : QString());
    edit_->setText(tr("&Edit Card..."));
}

}  // namespace VelkHost
