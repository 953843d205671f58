#include "host/browser/filters/ShownLibraries.h"

#include "host/browser/filters/FilterEditor.h"
#include "host/browser/filters/FilterMenu.h"
#include "host/browser/filters/HiddenNote.h"
#include "host/browser/filters/KindMenu.h"
#include "host/support/QtText.h"

#include <QFileDialog>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace VelkHost {
namespace {

LibraryTreeModel::Shown shownBy(const LibraryFilter* filter, const std::set<LibraryKind>& hidden)
{
    std::optional<std::set<std::string>> ids;
    if (filter != nullptr)
        ids.emplace(filter->getDatabaseIds().begin(), filter->getDatabaseIds().end());
    return [ids, hidden](const BrowsedLibrary& library) {
        return !hidden.contains(library.catalog->kind) && (!ids || ids->contains(library.catalog->id));
    };
}

QString joinedNames(const std::vector<std::string>& names)
{
    QStringList list;
    for (const std::string& name : names)
        list.append(qtText(name));
    return list.join(QStringLiteral(", "));
}

}  // namespace

ShownLibraries::ShownLibraries(LibraryTreeModel& model, QWidget* window)
    : QObject(window),
      model_(model),
      window_(window),
      box_(new FilterBox),
      menu_(new FilterMenu(window)),
      kinds_(new KindMenu(window)),
      page_(new HiddenNote(QBoxLayout::TopToBottom)),
      strip_(new HiddenNote(QBoxLayout::LeftToRight))
{
    strip_->hide();
    for (const HiddenNote* const note : {page_, strip_})
        connect(note, &HiddenNote::showAllAsked, this, &ShownLibraries::showAll);
    connect(kinds_, &KindMenu::changed, this, &ShownLibraries::apply);
    connectFilters();
    filters_.read();
}

void ShownLibraries::connectFilters()
{
    connect(box_, QOverload<int>::of(&QComboBox::activated), &filters_, &FilterStore::setCurrentEntry);
    connect(menu_, &FilterMenu::chosen, &filters_, &FilterStore::setCurrentEntry);
    connect(menu_, &FilterMenu::moreAsked, this, [this] {
        box_->setFocus();
        box_->showPopup();
    });
    connect(menu_, &FilterMenu::editAsked, this, &ShownLibraries::editFilters);
    connect(menu_, &FilterMenu::mergeAsked, this, &ShownLibraries::askForFilterFile);
    connect(&filters_, &FilterStore::changed, this, [this] {
        showFilters();
        apply();
        if (std::exchange(wantsEditor_, false))
            openEditor();
    });
    connect(&filters_, &FilterStore::merged, this, &ShownLibraries::tellMerge);
    connect(&filters_, &FilterStore::failed, this, [this](const QString& reason) {
        showFilters();
        Q_EMIT told(tr("The filters are as they were: %1").arg(reason));
    });
    connect(&filters_, &FilterStore::unreadable, this, [this](const QString& reason) {
        wantsEditor_ = false;
        showFilters();
        Q_EMIT told(tr("The filters cannot be read: %1").arg(reason));
    });
}

void ShownLibraries::showFilters()
{
    box_->setState(filters_.state());
    menu_->setState(filters_.state());
}

void ShownLibraries::apply()
{
    model_.setShown(shownBy(filters_.state().inForce(), kinds_->hidden()));
    Q_EMIT changed();
    explain();
}

bool ShownLibraries::hidesAll() const
{
    const auto& libraries = model_.libraries();
    return !libraries.empty() && std::none_of(libraries.begin(), libraries.end(),
                                              [&](const auto& entry) { return model_.isShown(entry.second); });
}

bool ShownLibraries::hidesSome() const
{
    const auto& libraries = model_.libraries();
    return std::any_of(libraries.begin(), libraries.end(),
                       [&](const auto& entry) { return !model_.isShown(entry.second); });
}

void ShownLibraries::setSearchInVain(bool inVain)
{
    searchInVain_ = inVain;
    explain();
}

void ShownLibraries::explain()
{
    page_->setText(tr("All libraries are hidden by %1.").arg(whatHides()));
    strip_->setText(hidesAll() ? tr("All libraries are hidden by %1.").arg(whatHides())
                               : tr("Some libraries were not searched: they are hidden by %1.").arg(whatHides()));
    strip_->setVisible(searchInVain_ && hidesSome());
}

QString ShownLibraries::whatHides() const
{
    const LibraryFilter* const filter = filters_.state().inForce();
    const bool byKind = !kinds_->hidden().empty();
    if (filter == nullptr)
        return tr("the choice of kinds");
    const QString name = qtText(filter->getFilterName());
    return byKind ? tr("the filter “%1” and the choice of kinds").arg(name) : tr("the filter “%1”").arg(name);
}

void ShownLibraries::tellHidden(const QString& library)
{
    Q_EMIT told(tr("“%1” was imported; it is hidden by %2.").arg(library, whatHides()));
}

void ShownLibraries::showAll()
{
    kinds_->setHidden({});
    if (filters_.state().inForce() != nullptr)
        filters_.setCurrentEntry(0);
}

// Who edits filters that are not known would add to those that are there, and not see them.
void ShownLibraries::editFilters()
{
    if (filters_.isKnown())
        return openEditor();
    wantsEditor_ = true;
    filters_.read();
}

void ShownLibraries::openEditor()
{
    auto* const editor = new FilterEditor(filters_.state(), model_.libraries(), window_);
    editor->setAttribute(Qt::WA_DeleteOnClose);
    connect(editor, &QDialog::accepted, this,
            [this, editor] { filters_.replace(editor->filters(), editor->currentId()); });
    editor->open();
}

void ShownLibraries::askForFilterFile()
{
    auto* const dialog =
        new QFileDialog(window_, tr("Merge Filters from a File"), {}, tr("Filter files (*.json);;All files (*)"));
    dialog->setObjectName(QStringLiteral("filterFileDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& path) { filters_.merge(fileString(path.toStdString())); });
    dialog->open();
}

void ShownLibraries::tellMerge(const FilterMerge& merge)
{
    const int present = static_cast<int>(merge.present);
    QString text =
        merge.came.empty()
            ? tr("No filter was added.")
            : tr("%Ln filter(s) added: %1.", nullptr, static_cast<int>(merge.came.size())).arg(joinedNames(merge.came));
    if (present > 0)
        text += u' ' + tr("%Ln filter(s) were here already.", nullptr, present);
    Q_EMIT told(text);
}

}  // namespace VelkHost
