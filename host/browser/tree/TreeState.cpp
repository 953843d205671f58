#include "host/browser/tree/TreeState.h"

#include "host/support/QtText.h"

#include <QScrollBar>
#include <QTreeView>

#include <algorithm>
#include <utility>

namespace VelkHost {

TreeState::TreeState(QTreeView& tree, LibraryTreeModel& model, const std::set<fileString>& libraries)
    : tree_(tree),
      model_(model),
      current_(named(tree.currentIndex(), libraries)),
      scrolled_(tree.verticalScrollBar()->value() > 0),
      horizontal_(tree.horizontalScrollBar()->value())
{
    for (const fileString& library : libraries)
        if (std::vector<OpenFolder> open = openAmong(model.categories(library)); !open.empty())
            open_.emplace(library, std::move(open));
    if (!scrolled_)
        return;
    const QModelIndex top = tree.indexAt(QPoint(0, 0));
    top_ = named(top, libraries);
    if (!top_)
        topElsewhere_ = top;
}

// A view that scrolls to its selection by itself would open the folders above it.
void TreeState::restore() const
{
    const bool scrollsItself = tree_.hasAutoScroll();
    tree_.setAutoScroll(false);
    for (const auto& [path, folders] : open_)
        if (const BrowsedLibrary* const library = model_.library(path); library != nullptr && library->order != nullptr)
            open(folders, *library, library->order->categories());
    if (const QModelIndex current = current_ ? findNear(*current_) : QModelIndex(); current.isValid())
        tree_.setCurrentIndex(current);
    tree_.setAutoScroll(scrollsItself);
    restoreScrolling();
}

// A view that is not scrolled stays at its top, so that new entries above the old ones are seen.
void TreeState::restoreScrolling() const
{
    if (!scrolled_)
        tree_.scrollToTop();
    else if (const QModelIndex top = top_ ? inView(findNear(*top_)) : QModelIndex(topElsewhere_); top.isValid())
        tree_.scrollTo(top, QAbstractItemView::PositionAtTop);
    tree_.horizontalScrollBar()->setValue(horizontal_);
}

std::vector<TreeState::OpenFolder> TreeState::openAmong(const std::vector<QModelIndex>& siblings) const
{
    std::vector<OpenFolder> folders;
    for (const QModelIndex& index : siblings)
        if (tree_.isExpanded(index))
            folders.push_back({index.data().toString(), openAmong(foldersIn(index))});
    return folders;
}

// Folders stand before items.
std::vector<QModelIndex> TreeState::foldersIn(const QModelIndex& folder) const
{
    std::vector<QModelIndex> folders;
    for (int row = 0; row < model_.rowCount(folder); ++row) {
        const QModelIndex index = model_.index(row, 0, folder);
        if (const std::optional<LibraryPlace> place = model_.place(index); !place || !place->isFolder)
            break;
        folders.push_back(index);
    }
    return folders;
}

/// The place that an index stands for; empty when it is not in one of the libraries.
std::optional<TreeState::NamedPlace> TreeState::named(const QModelIndex& index,
                                                      const std::set<fileString>& libraries) const
{
    const std::optional<LibraryPlace> place = model_.place(index);
    if (!place || !libraries.contains(place->library))
        return std::nullopt;
    NamedPlace result{place->library, {}, {}};
    if (!place->isFolder)
        result.uniqueId = model_.library(place->library)->catalog->items[place->index].uniqueId;
    for (QModelIndex folder = place->isFolder ? index : index.parent(); folder.isValid(); folder = folder.parent())
        result.folders.prepend(folder.data().toString());
    return result;
}

// `among` are the new version's folders in one of its folders.
void TreeState::open(const std::vector<OpenFolder>& folders, const BrowsedLibrary& library,
                     CatalogOrder::Indexes among) const
{
    for (const OpenFolder& folder : folders) {
        const auto found = std::find_if(among.begin(), among.end(), [&](std::uint32_t index) {
            return qtText(library.catalog->folders[index].name) == folder.name;
        });
        if (found == among.end())
            continue;
        tree_.expand(model_.find({library.path, true, *found}));
        open(folder.folders, library, library.order->foldersIn(*found));
    }
}

QModelIndex TreeState::find(const NamedPlace& place) const
{
    const std::optional<LibraryPlace> found = place.uniqueId.empty() ? model_.folderNamed(place.library, place.folders)
                                                                     : model_.itemNamed(place.library, place.uniqueId);
    return found ? model_.find(*found) : QModelIndex();
}

QModelIndex TreeState::findNear(NamedPlace place) const
{
    QModelIndex index = find(place);
    place.uniqueId.clear();
    while (!index.isValid() && !place.folders.isEmpty()) {
        index = find(place);
        place.folders.removeLast();
    }
    return index;
}

/// The index, or the closest one above it that no closed folder hides.
QModelIndex TreeState::inView(const QModelIndex& index) const
{
    QModelIndex result = index;
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
        if (!tree_.isExpanded(above))
            result = above;
    return result;
}

}  // namespace VelkHost
