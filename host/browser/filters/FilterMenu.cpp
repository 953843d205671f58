#include "host/browser/filters/FilterMenu.h"

#include <QActionGroup>
#include <QEvent>

namespace VelkHost {
namespace {

constexpr int boxCharacters = 14;

/// The entry's text with the key that chooses it: digits, and letters then.
QString withKey(int entry, QString text)
{
    const QString keys = QStringLiteral("0123456789abcdfghijklnopqrstuvwxyz");  // two letters are taken
    text.replace(u'&', QStringLiteral("&&"));
    return entry < keys.size() ? u'&' + keys.mid(entry, 1) + QStringLiteral("  ") + text : text;
}

}  // namespace

FilterBox::FilterBox(QWidget* parent) : QComboBox(parent)
{
    setObjectName(QStringLiteral("filterBox"));
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);  // measuring thousands of names takes time
    setMinimumContentsLength(boxCharacters);
    retranslate();
}

void FilterBox::setState(const FilterState& state)
{
    clear();
    addItems(state.entries);
    setCurrentIndex(state.currentEntry());
    setToolTip(currentText().toHtmlEscaped());
}

void FilterBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QComboBox::changeEvent(event);
}

void FilterBox::retranslate()
{
    setAccessibleName(tr("Filter"));
}

FilterMenu::FilterMenu(QWidget* parent)
    : QMenu(parent),
      entries_(new QActionGroup(this)),
      separator_(addSeparator()),
      edit_(addAction(QString())),
      merge_(addAction(QString()))
{
    setObjectName(QStringLiteral("filterMenu"));
    edit_->setObjectName(QStringLiteral("editFiltersAction"));
    edit_->setShortcut(Qt::CTRL + Qt::SHIFT + Qt::Key_F);
    merge_->setObjectName(QStringLiteral("mergeFiltersAction"));
    connect(edit_, &QAction::triggered, this, &FilterMenu::editAsked);
    connect(merge_, &QAction::triggered, this, &FilterMenu::mergeAsked);
    retranslate();
}

void FilterMenu::setState(const FilterState& state)
{
    for (QAction* const action : entries_->actions())
        delete action;
    for (int entry = 0; entry < state.entries.size(); ++entry) {
        auto* const action = new QAction(withKey(entry, state.entries[entry]), entries_);
        action->setObjectName(QStringLiteral("filterAction%1").arg(entry));
        action->setCheckable(true);
        action->setChecked(entry == state.currentEntry());
        connect(action, &QAction::triggered, this, [this, entry] { Q_EMIT chosen(entry); });
        insertAction(separator_, action);
    }
}

void FilterMenu::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMenu::changeEvent(event);
}

void FilterMenu::retranslate()
{
    setTitle(tr("Fi&lters"));
    edit_->setText(tr("&Edit Filters..."));
    merge_->setText(tr("&Merge Filters from a File..."));
}

}  // namespace VelkHost
