#include "host/browser/tree/TreeState.h"

#include "host/support/QtText.h"

#include <QScrollBar>
#include <QTreeView>

#include <algorithm>

namespace VelkHost {

TreeState::TreeState(QTreeView& tree, LibraryTreeModel& model, const fileString& library)
    : tree_(tree),
      model_(model),
      library_(library),
      open_(openFolders({})),
      current_(named(tree.currentIndex())),
      scrolled_(tree.verticalScrollBar()->value() > 0),
      horizontal_(tree.horizontalScrollBar()->value())
{
    const QModelIndex top = tree.indexAt(QPoint(0, 0));
    top_ = named(top);
    if (!top_)
        topElsewhere_ = top;
}

// A view that scrolls to its selection by itself would open the folders above it.
void TreeState::restore() const
{
    const bool scrollsItself = tree_.hasAutoScroll();
    tree_.setAutoScroll(false);
    if (const BrowsedLibrary* const library = model_.library(library_); library != nullptr && library->order != nullptr)
        open(open_, library->order->categories());
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

// Folders stand before items.
std::vector<TreeState::OpenFolder> TreeState::openFolders(const QModelIndex& parent) const
{
    std::vector<OpenFolder> folders;
    for (int row = 0; row < model_.rowCount(parent); ++row) {
        const QModelIndex index = model_.index(row, 0, parent);
        const std::optional<LibraryPlace> place = model_.place(index);
        if (!place || !place->isFolder)
            break;
        if (place->library == library_ && tree_.isExpanded(index))
            folders.push_back({index.data().toString(), openFolders(index)});
    }
    return folders;
}

/// The place that an index stands for; empty when it is not in the library.
std::optional<TreeState::NamedPlace> TreeState::named(const QModelIndex& index) const
{
    const std::optional<LibraryPlace> place = model_.place(index);
    if (!place || place->library != library_)
        return std::nullopt;
    NamedPlace result;
    if (!place->isFolder)
        result.uniqueId = model_.library(library_)->catalog->items[place->index].uniqueId;
    for (QModelIndex folder = place->isFolder ? index : index.parent(); folder.isValid(); folder = folder.parent())
        result.folders.prepend(folder.data().toString());
    return result;
}

// `among` are the new version's folders in one of its folders.
void TreeState::open(const std::vector<OpenFolder>& folders, CatalogOrder::Indexes among) const
{
    const BrowsedLibrary& library = *model_.library(library_);
    for (const OpenFolder& folder : folders) {
        const auto found = std::find_if(among.begin(), among.end(), [&](std::uint32_t index) {
            return qtText(library.catalog->folders[index].name) == folder.name;
        });
        if (found == among.end())
            continue;
        tree_.expand(model_.find({library_, true, *found}));
        open(folder.folders, library.order->foldersIn(*found));
    }
}

QModelIndex TreeState::find(const NamedPlace& place) const
{
    const std::optional<LibraryPlace> found = place.uniqueId.empty() ? model_.folderNamed(library_, place.folders)
                                                                     : model_.itemNamed(library_, place.uniqueId);
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
