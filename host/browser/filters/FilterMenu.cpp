#include "host/browser/filters/FilterMenu.h"

#include <QActionGroup>
#include <QEvent>
#include <QKeySequence>
#include <QListView>

#include <algorithm>
#include <initializer_list>

namespace VelkHost {
namespace {

constexpr int boxCharacters = 14;

/// The entry's text with the key that chooses it.
QString withKey(QChar key, QString text)
{
    return u'&' + QString(key) + QStringLiteral("  ") + text.replace(u'&', QStringLiteral("&&"));
}

/// The digits and letters, except those that the actions use.
QString freeKeys(std::initializer_list<const QAction*> actions)
{
    QString keys = QStringLiteral("0123456789abcdefghijklmnopqrstuvwxyz");
    for (const QAction* const action : actions)
        keys.remove(QKeySequence::mnemonic(action->text()).toString(QKeySequence::PortableText).right(1),
                    Qt::CaseInsensitive);
    return keys;
}

}  // namespace

FilterBox::FilterBox(QWidget* parent) : QComboBox(parent)
{
    setObjectName(QStringLiteral("filterBox"));
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);  // measuring thousands of names takes time
    setMinimumContentsLength(boxCharacters);
    if (auto* const list = qobject_cast<QListView*>(view()))
        list->setUniformItemSizes(true);
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
      more_(addAction(QString())),
      separator_(addSeparator()),
      edit_(addAction(QString())),
      merge_(addAction(QString()))
{
    setObjectName(QStringLiteral("filterMenu"));
    more_->setObjectName(QStringLiteral("moreFiltersAction"));
    edit_->setObjectName(QStringLiteral("editFiltersAction"));
    edit_->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F")));
    merge_->setObjectName(QStringLiteral("mergeFiltersAction"));
    connect(more_, &QAction::triggered, this, &FilterMenu::moreAsked);
    connect(edit_, &QAction::triggered, this, &FilterMenu::editAsked);
    connect(merge_, &QAction::triggered, this, &FilterMenu::mergeAsked);
    retranslate();
}

void FilterMenu::setState(const FilterState& state)
{
    for (QAction* const action : entries_->actions())
        delete action;
    const QString keys = freeKeys({more_, edit_, merge_});
    const int shown = static_cast<int>(std::min(state.entries.size(), keys.size()));
    more_->setVisible(shown < state.entries.size());
    for (int entry = 0; entry < shown; ++entry) {
        auto* const action = new QAction(withKey(keys[entry], state.entries[entry]), entries_);
        action->setObjectName(QStringLiteral("filterAction%1").arg(entry));
        action->setCheckable(true);
        action->setChecked(entry == state.currentEntry());
        connect(action, &QAction::triggered, this, [this, entry] { Q_EMIT chosen(entry); });
        insertAction(more_, action);
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
    more_->setText(tr("More &Filters"));
    edit_->setText(tr("&Edit Filters..."));
    merge_->setText(tr("&Merge Filters from a File..."));
}

}  // namespace VelkHost
