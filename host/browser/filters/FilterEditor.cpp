#include "host/browser/filters/FilterEditor.h"

#include "host/support/QtText.h"

#include <VelkLibrary/Filter/FreeFilterIds.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

constexpr int libraryIdRole = Qt::UserRole + 1;

/// Bytes, as an id need not be UTF-8.
std::string libraryIdOf(const QStandardItem& item)
{
    return item.data(libraryIdRole).toByteArray().toStdString();
}

bool hasName(const std::vector<LibraryFilter>& filters, const QString& name)
{
    return std::any_of(filters.begin(), filters.end(),
                       [&](const LibraryFilter& filter) { return qtText(filter.getFilterName()) == name; });
}

void include(LibraryFilter& filter, const std::string& id, bool included)
{
    std::vector<std::string> ids = filter.getDatabaseIds();
    std::erase(ids, id);
    if (included)
        ids.push_back(id);
    filter.setDatabaseIds(std::move(ids));
}

}  // namespace

FilterEditor::FilterEditor(const FilterState& state, const std::map<fileString, BrowsedLibrary>& libraries,
                           QWidget* parent)
    : QDialog(parent),
      filters_(state.filters),
      currentId_(state.inForce() == nullptr ? noFilterId : state.currentId),
      list_(new QListWidget),
      add_(new QPushButton(tr("&Add"))),
      rename_(new QPushButton(tr("Re&name"))),
      remove_(new QPushButton(tr("&Remove"))),
      current_(new QCheckBox(tr("In &force"))),
      libraryTitle_(new QLabel(tr("&Libraries"))),
      search_(new QLineEdit),
      libraryView_(new QListView),
      problem_(new QLabel),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("filterEditor"));
    setWindowTitle(tr("Edit Filters"));
    buildFilters();
    buildLibraries(libraries);
    buildLayout();
    connectAll();
    list_->setCurrentRow(std::max(0, state.currentEntry() - 1));
    showSelected();
    showProblem();
    list_->setFocus();
}

// A name that is still being edited arrives when the list is destroyed, which is after everything here.
FilterEditor::~FilterEditor()
{
    list_->disconnect(this);
}

void FilterEditor::buildFilters()
{
    list_->setObjectName(QStringLiteral("filterList"));
    list_->setAccessibleName(tr("Filters"));
    list_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    for (const LibraryFilter& filter : filters_) {
        auto* const item = new QListWidgetItem(qtText(filter.getFilterName()), list_);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    showNames();
    add_->setObjectName(QStringLiteral("addFilterButton"));
    rename_->setObjectName(QStringLiteral("renameFilterButton"));
    remove_->setObjectName(QStringLiteral("removeFilterButton"));
    for (QPushButton* const button : {add_, rename_, remove_})
        button->setAutoDefault(false);  // Enter is for OK
    current_->setObjectName(QStringLiteral("filterInForce"));
    current_->setToolTip(tr("The window shows only the libraries of the filter in force"));
}

void FilterEditor::buildLibraries(const std::map<fileString, BrowsedLibrary>& libraries)
{
    std::map<std::string, QString> titles;  // by id
    for (const auto& [path, library] : libraries)
        titles.emplace(library.catalog->id, qtText(library.catalog->name));
    for (const auto& [id, title] : titles)
        addLibrary(id, title);
    libraries_.sort(0);
    for (const LibraryFilter& filter : filters_)
        for (const std::string& id : filter.getDatabaseIds())
            if (titles.emplace(id, QString()).second)
                addLibrary(id, tr("%1 (not installed)").arg(qtText(id)));
    found_.setSourceModel(&libraries_);
    found_.setFilterCaseSensitivity(Qt::CaseInsensitive);
    libraryView_->setObjectName(QStringLiteral("filterLibraries"));
    libraryView_->setModel(&found_);
    libraryView_->setUniformItemSizes(true);
    libraryView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    libraryView_->setAccessibleName(tr("Libraries of the filter"));
    search_->setObjectName(QStringLiteral("filterLibrarySearch"));
    search_->setPlaceholderText(tr("Find a library"));
    search_->setAccessibleName(tr("Find a library"));
    search_->setClearButtonEnabled(true);
}

void FilterEditor::addLibrary(const std::string& id, const QString& title)
{
    auto* const item = new QStandardItem(title);
    item->setData(QByteArray::fromStdString(id), libraryIdRole);
    item->setCheckable(true);
    item->setEditable(false);
    item->setToolTip(qtText(id).toHtmlEscaped());
    libraries_.appendRow(item);
}

QWidget* FilterEditor::filterSide()
{
    auto* const title = new QLabel(tr("Fil&ters"));
    title->setBuddy(list_);
    auto* const keys = new QHBoxLayout;
    for (QPushButton* const button : {add_, rename_, remove_})
        keys->addWidget(button);
    auto* const side = new QWidget;
    auto* const layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title);
    layout->addWidget(list_, 1);
    layout->addWidget(current_);
    layout->addLayout(keys);
    return side;
}

QWidget* FilterEditor::librarySide()
{
    libraryTitle_->setObjectName(QStringLiteral("filterLibraryTitle"));
    libraryTitle_->setBuddy(search_);
    auto* const side = new QWidget;
    auto* const layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(libraryTitle_);
    layout->addWidget(search_);
    layout->addWidget(libraryView_, 1);
    return side;
}

void FilterEditor::buildLayout()
{
    problem_->setObjectName(QStringLiteral("filterProblem"));
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    buttons_->setObjectName(QStringLiteral("filterButtons"));
    auto* const sides = new QSplitter(Qt::Horizontal);
    sides->setObjectName(QStringLiteral("filterSplitter"));
    sides->setChildrenCollapsible(false);
    sides->setHandleWidth(12);
    sides->addWidget(filterSide());
    sides->addWidget(librarySide());
    sides->setSizes({280, 360});
    auto* const foot = new QHBoxLayout;
    foot->addWidget(problem_, 1);
    foot->addWidget(buttons_);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(sides, 1);
    layout->addLayout(foot);
    resize(680, 440);
}

void FilterEditor::connectAll()
{
    connect(list_, &QListWidget::currentRowChanged, this, &FilterEditor::showSelected);
    connect(list_, &QListWidget::itemChanged, this, &FilterEditor::nameEdited);
    connect(add_, &QPushButton::clicked, this, &FilterEditor::add);
    connect(rename_, &QPushButton::clicked, this, &FilterEditor::rename);
    connect(remove_, &QPushButton::clicked, this, &FilterEditor::remove);
    auto* const removeKey = new QShortcut(QKeySequence::Delete, list_);
    removeKey->setContext(Qt::WidgetShortcut);  // the names' editor has its own use for the key
    connect(removeKey, &QShortcut::activated, this, &FilterEditor::remove);
    connect(current_, &QCheckBox::toggled, this, &FilterEditor::makeCurrent);
    connect(search_, &QLineEdit::textChanged, &found_, &QSortFilterProxyModel::setFilterFixedString);
    connect(&libraries_, &QStandardItemModel::itemChanged, this, &FilterEditor::libraryToggled);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

/// The list's rows are the filters.
LibraryFilter* FilterEditor::selected()
{
    const int row = list_->currentRow();
    return row < 0 || static_cast<std::size_t>(row) >= filters_.size() ? nullptr
                                                                       : &filters_[static_cast<std::size_t>(row)];
}

void FilterEditor::add()
{
    QString name = tr("New filter");
    for (int number = 2; hasName(filters_, name); ++number)
        name = tr("New filter %1").arg(number);
    filters_.emplace_back(name.toStdString(), FreeFilterIds(filters_, 1).take(), std::vector<std::string>());
    auto* const item = new QListWidgetItem(name);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    list_->addItem(item);
    list_->setCurrentItem(item);
    showProblem();
    rename();
}

void FilterEditor::rename()
{
    if (QListWidgetItem* const item = list_->currentItem()) {
        list_->setFocus();
        list_->editItem(item);
    }
}

void FilterEditor::remove()
{
    const LibraryFilter* const filter = selected();
    if (filter == nullptr)
        return;
    if (filter->getFilterId() == currentId_)
        currentId_ = noFilterId;
    const int row = list_->currentRow();
    filters_.erase(filters_.begin() + row);
    {
        const QSignalBlocker shownBelow(list_);
        delete list_->takeItem(row);
    }
    showSelected();
    showProblem();
}

void FilterEditor::nameEdited(QListWidgetItem* item)
{
    const auto row = static_cast<std::size_t>(list_->row(item));
    if (row >= filters_.size())
        return;
    filters_[row].setFilterName(item->text().trimmed().toStdString());
    showSelected();
    showProblem();
}

void FilterEditor::libraryToggled(const QStandardItem* item)
{
    if (LibraryFilter* const filter = selected())
        include(*filter, libraryIdOf(*item), item->checkState() == Qt::Checked);
}

void FilterEditor::makeCurrent(bool current)
{
    if (const LibraryFilter* const filter = selected())
        currentId_ = current ? filter->getFilterId() : noFilterId;
    showNames();
}

void FilterEditor::showSelected()
{
    const LibraryFilter* const filter = selected();
    for (QWidget* const widget : std::initializer_list<QWidget*>{rename_, remove_, current_, search_, libraryView_})
        widget->setEnabled(filter != nullptr);
    const QSignalBlocker quietBox(current_);
    const QSignalBlocker quietModel(libraries_);
    current_->setChecked(filter != nullptr && filter->getFilterId() == currentId_);
    std::set<std::string> ids;
    if (filter != nullptr)
        ids.insert(filter->getDatabaseIds().begin(), filter->getDatabaseIds().end());
    for (int row = 0; row < libraries_.rowCount(); ++row) {
        QStandardItem* const item = libraries_.item(row);
        item->setCheckState(ids.contains(libraryIdOf(*item)) ? Qt::Checked : Qt::Unchecked);
    }
    libraryView_->viewport()->update();
    showNames();
}

void FilterEditor::showNames()
{
    const QSignalBlocker quiet(list_);
    for (std::size_t i = 0; i < filters_.size(); ++i) {
        QListWidgetItem* const item = list_->item(static_cast<int>(i));
        if (item == nullptr)
            continue;
        const bool inForce = filters_[i].getFilterId() == currentId_;
        QFont font = list_->font();
        font.setBold(inForce);
        item->setFont(font);
        item->setToolTip(inForce ? tr("In force") : QString());
    }
    list_->viewport()->update();
}

void FilterEditor::showProblem()
{
    const QString text = problem();
    problem_->setText(text);
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(text.isEmpty());
}

QString FilterEditor::problem() const
{
    std::set<std::string> names;
    for (const LibraryFilter& filter : filters_) {
        const std::string& name = filter.getFilterName();
        if (name.empty())
            return tr("A filter needs a name.");
        if (!names.insert(name).second)
            return tr("There are two filters “%1”.").arg(qtText(name));
    }
    return {};
}

}  // namespace VelkHost
