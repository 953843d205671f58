#include "host/browser/tree/LibraryTreeModel.h"

#include "host/browser/tree/ItemDrag.h"
#include "host/browser/tree/LibraryCategories.h"
#include "host/browser/tree/LibraryDelegate.h"
#include "host/browser/tree/ShownSize.h"
#include "host/support/QtText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/UI/TreeFolderData.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QMimeData>

#include <algorithm>
#include <functional>
#include <utility>

using Library::LibraryCategory;
using Library::TreeCategoryData;
using Library::TreeData;
using Library::TreeFolderData;
using Library::TreeItemData;

namespace VelkHost {
namespace {

constexpr std::size_t nodesAtOnce = 256;    // nodes; a view asks again when it reaches their end
constexpr std::size_t mostForOne = 20'000;  // nodes that are made to reach a single one; takes some 30 ms

// Ids below -1 belong to folders, those from 0 on to items.
long long folderId(std::size_t folder)
{
    return -2 - static_cast<long long>(folder);
}

LibraryPlace placeOf(const TreeData& node)
{
    const long long id = node.getId();
    const bool isFolder = !TreeData::isItemId(id);
    return {node.getDatabasePath(), isFolder, static_cast<std::size_t>(isFolder ? -2 - id : id)};
}

bool isTop(const QModelIndex& index)
{
    return index.isValid() && !index.parent().isValid();
}

std::u32string textOf(const std::string& name)
{
    return StringConvert::toUnicodeFromUtf8(name);
}

}  // namespace

/// A row at the top. It knows its library, since a view asks all of these rows for their children at once.
class LibraryTreeModel::Category : public TreeCategoryData
{
public:
    Category(const BrowsedLibrary& library, std::size_t folder, std::size_t rank)
        : TreeCategoryData(folderId(folder), static_cast<LibraryCategory>(library.catalog->kind), library.path),
          library_(library),
          rank_(rank)
    {
        setItemName(textOf(library.catalog->folders[folder].name));
        libraryChanged();
    }

    const BrowsedLibrary& library() const { return library_; }

    /// Its library has got its items.
    void libraryChanged()
    {
        const auto folder = static_cast<std::size_t>(folderId(0) - getId());
        hasEntries_ = library_.order == nullptr || !library_.order->foldersIn(folder).empty() ||
                      !library_.order->itemsIn(folder).empty();
    }

    /// Whether there is anything in it; before the items are read, there is taken to be.
    bool hasEntries() const { return hasEntries_; }

    /// The order of the tree, in which no two categories are equal.
    bool precedes(const Category& other) const
    {
        if (const int order = treeOrderComparatorStatic(*this, other); order != 0)
            return order < 0;
        return rank_ != other.rank_ ? rank_ < other.rank_ : getId() > other.getId();
    }

private:
    const BrowsedLibrary& library_;
    const std::size_t rank_;
    bool hasEntries_ = true;
};

LibraryTreeModel::LibraryTreeModel(ThumbnailCache& thumbnails, QObject* parent)
    : QStandardItemModel(parent), thumbnails_(thumbnails)
{}

void LibraryTreeModel::setPictureSide(int side)
{
    pictureSide_ = side;
}

std::vector<BrowsedLibrary> LibraryTreeModel::take(const std::vector<LibraryArrival>& arrivals)
{
    const News news = newsOf(arrivals);
    std::vector<fileString> others;  // than those that only get their items
    for (const auto& [path, library] : news)
        if (!keepsCategories(*library))
            others.push_back(path);
    removeCategories(others);  // while the libraries are still there that they belong to
    std::vector<BrowsedLibrary> replaced = replaceBy(news);
    addCategories(others);
    if (others.size() < news.size())
        Q_EMIT layoutChanged();
    return replaced;
}

bool LibraryTreeModel::isNews(const BrowsedLibrary& library, const BrowsedLibrary* known)
{
    const bool isOutline = library.catalog != nullptr && library.order == nullptr;
    return !isOutline || known == nullptr || known->order == nullptr;
}

LibraryTreeModel::News LibraryTreeModel::newsOf(const std::vector<LibraryArrival>& arrivals)
{
    News news;
    for (const LibraryArrival& arrival : arrivals) {
        const BrowsedLibrary& library = arrival.library;
        const auto earlier = news.find(library.path);
        const BrowsedLibrary* const known = earlier == news.end() ? this->library(library.path) : earlier->second;
        if (!isNews(library, known))
            continue;
        if (shelves_.try_emplace(library.path, Shelf{nextRank_, {}}).second)
            ++nextRank_;
        news[library.path] = &library;
    }
    return news;
}

/// Whether a library has the categories that its outline had; they have nothing below them yet.
bool LibraryTreeModel::keepsCategories(const BrowsedLibrary& library) const
{
    const BrowsedLibrary* const known = this->library(library.path);
    return known != nullptr && known->order == nullptr && library.catalog != nullptr &&
           known->catalog->folders == library.catalog->folders;
}

std::vector<BrowsedLibrary> LibraryTreeModel::replaceBy(const News& news)
{
    std::vector<BrowsedLibrary> replaced;
    for (const auto& [path, library] : news) {
        if (library->catalog != nullptr) {
            replaced.push_back(std::exchange(libraries_[path], *library));
            for (Category* const category : shelves_.at(path).categories)
                category->libraryChanged();
        } else {
            if (const auto gone = libraries_.extract(path); !gone.empty())
                replaced.push_back(std::move(gone.mapped()));
            shelves_.erase(path);
        }
    }
    return replaced;
}

void LibraryTreeModel::setShown(Shown shown)
{
    const Shown before = std::exchange(shown_, std::move(shown));
    std::vector<fileString> leaving;
    std::vector<fileString> coming;
    for (const auto& [path, library] : libraries_) {
        const bool wasShown = !before || before(library);
        if (wasShown != isShown(library))
            (wasShown ? leaving : coming).push_back(path);
    }
    removeCategories(leaving);
    addCategories(coming);
}

const BrowsedLibrary* LibraryTreeModel::library(const fileString& path) const
{
    const auto found = libraries_.find(path);
    return found == libraries_.end() ? nullptr : &found->second;
}

std::optional<LibraryPlace> LibraryTreeModel::place(const QModelIndex& index) const
{
    const TreeData* const data = node(index);
    if (data == nullptr)
        return std::nullopt;
    return placeOf(*data);
}

QModelIndex LibraryTreeModel::find(const LibraryPlace& place)
{
    const BrowsedLibrary* const found = library(place.library);
    if (found == nullptr || found->order == nullptr || !isShown(*found))
        return {};
    const Catalog& catalog = *found->catalog;
    if (place.index >= (place.isFolder ? catalog.folders.size() : catalog.items.size()))
        return {};
    std::vector<std::size_t> folders;  // from the place up
    std::size_t folder = place.isFolder ? place.index : catalog.items[place.index].folder;
    for (; folder != Folder::noParent; folder = catalog.folders[folder].parent)
        folders.push_back(folder);
    QModelIndex index;
    for (auto at = folders.rbegin(); at != folders.rend(); ++at) {
        index = findBelow(index, {place.library, true, *at});
        if (!index.isValid())
            return {};
    }
    return place.isFolder ? index : findBelow(index, place);
}

std::optional<LibraryPlace> LibraryTreeModel::folderNamed(const fileString& path, const QStringList& names) const
{
    const BrowsedLibrary* const found = library(path);
    if (found == nullptr)
        return std::nullopt;
    std::size_t parent = Folder::noParent;
    const std::vector<Folder>& folders = found->catalog->folders;
    for (const QString& name : names) {
        const auto at = std::find_if(folders.begin(), folders.end(), [&](const Folder& folder) {
            return folder.parent == parent && qtText(folder.name) == name;
        });
        if (at == folders.end())
            return std::nullopt;
        parent = static_cast<std::size_t>(at - folders.begin());
    }
    if (parent == Folder::noParent)
        return std::nullopt;
    return LibraryPlace{path, true, parent};
}

std::optional<LibraryPlace> LibraryTreeModel::itemNamed(const fileString& path, const std::string& uniqueId) const
{
    const BrowsedLibrary* const found = library(path);
    if (found == nullptr)
        return std::nullopt;
    const std::vector<Item>& items = found->catalog->items;
    const auto at =
        std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.uniqueId == uniqueId; });
    if (at == items.end())
        return std::nullopt;
    return LibraryPlace{path, false, static_cast<std::size_t>(at - items.begin())};
}

bool LibraryTreeModel::hasChildren(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return rowCount() > 0;
    if (isTop(parent))
        return category(parent.row()).hasEntries();
    const TreeData* const data = node(parent);
    if (data == nullptr || data->isItem())
        return false;
    const std::optional<Below> children = below(parent);
    return !children || children->size() > 0;  // before its items are read, a folder is taken to have some
}

// A view asks all rows at the top whenever one of them comes or goes, so these are answered without looking at them.
Qt::ItemFlags LibraryTreeModel::flags(const QModelIndex& index) const
{
    return isTop(index) ? Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEnabled
                        : QStandardItemModel::flags(index);
}

bool LibraryTreeModel::canFetchMore(const QModelIndex& parent) const
{
    const std::optional<Below> children = parent.isValid() ? below(parent) : std::nullopt;
    return children && static_cast<std::size_t>(rowCount(parent)) < children->size();
}

void LibraryTreeModel::fetchMore(const QModelIndex& parent)
{
    fetch(parent, nodesAtOnce);
}

QVariant LibraryTreeModel::data(const QModelIndex& index, int role) const
{
    const TreeData* const data = node(index);
    if (role == LibraryDelegate::PictureRole)
        return data != nullptr && data->isItem();
    if (data == nullptr ||
        (role != Qt::DecorationRole && role != Qt::ToolTipRole && role != LibraryDelegate::QuietTextRole))
        return QStandardItemModel::data(index, role);
    const BrowsedLibrary* const found = libraryOf(*data);
    if (found == nullptr)
        return {};
    if (data->isItem())
        return dataOfItem(*found, placeOf(*data).index, role);
    const bool isCategory = !index.parent().isValid();
    return isCategory && role != Qt::DecorationRole ? qtText(found->catalog->name) : QVariant();
}

QVariant LibraryTreeModel::dataOfItem(const BrowsedLibrary& library, std::size_t index, int role) const
{
    if (index >= library.catalog->items.size())
        return {};
    if (role == LibraryDelegate::QuietTextRole)
        return shownSize(library.catalog->sizeOf(index));
    const Item& item = library.catalog->items[index];
    if (role == Qt::ToolTipRole)
        return qtText(item.keywords).toHtmlEscaped();
    return thumbnails_.find({library.path, item.uniqueId, pictureSide_});
}

QMimeData* LibraryTreeModel::mimeData(const QModelIndexList& indexes) const
{
    for (const QModelIndex& index : indexes) {
        const std::optional<LibraryPlace> dragged = place(index);
        const BrowsedLibrary* const found = dragged && !dragged->isFolder ? library(dragged->library) : nullptr;
        if (found != nullptr)
            return dragOf(found->path, *found->catalog, dragged->index,
                          index.data(Qt::DecorationRole).value<QPixmap>());
    }
    return nullptr;
}

Qt::DropActions LibraryTreeModel::supportedDragActions() const
{
    return Qt::CopyAction;
}

TreeData* LibraryTreeModel::node(const QModelIndex& index) const
{
    return static_cast<TreeData*>(itemFromIndex(index));  // the model holds no other nodes
}

const BrowsedLibrary* LibraryTreeModel::libraryOf(const TreeData& node) const
{
    return node.parent() == nullptr ? &static_cast<const Category&>(node).library() : library(node.getDatabasePath());
}

/// The entries of a category or folder; empty while they are not read, and for an item.
std::optional<LibraryTreeModel::Below> LibraryTreeModel::below(const QModelIndex& index) const
{
    const TreeData* const data = node(index);
    const BrowsedLibrary* const found = data == nullptr || data->isItem() ? nullptr : libraryOf(*data);
    if (found == nullptr || found->order == nullptr)
        return std::nullopt;
    const std::size_t folder = placeOf(*data).index;
    return Below{found->order->foldersIn(folder), found->order->itemsIn(folder)};
}

const LibraryTreeModel::Category& LibraryTreeModel::category(int row) const
{
    return static_cast<const Category&>(*item(row));  // all at the top are categories
}

/// The row of a category, or the one where it belongs.
int LibraryTreeModel::rowOf(const Category& category) const
{
    int begin = 0;
    for (int end = rowCount(); begin < end;) {
        const int middle = begin + (end - begin) / 2;
        if (this->category(middle).precedes(category))
            begin = middle + 1;
        else
            end = middle;
    }
    return begin;
}

std::vector<QModelIndex> LibraryTreeModel::categories(const fileString& library) const
{
    std::vector<QModelIndex> indexes;
    if (const auto shelf = shelves_.find(library); shelf != shelves_.end())
        for (const Category* const category : shelf->second.categories)
            indexes.push_back(index(rowOf(*category), 0));
    return indexes;
}

/// Adds the categories of those libraries that are shown. They are sorted once, and neighbours are inserted together.
void LibraryTreeModel::addCategories(const std::vector<fileString>& libraries)
{
    std::vector<Category*> added;
    for (const fileString& path : libraries) {
        const BrowsedLibrary* const library = this->library(path);
        if (library == nullptr || !isShown(*library))
            continue;
        Shelf& shelf = shelves_.at(path);
        for (std::size_t i = 0; i < library->catalog->folders.size(); ++i)
            if (library->catalog->folders[i].parent == Folder::noParent) {
                added.push_back(new Category(*library, i, shelf.rank));
                shelf.categories.push_back(added.back());
            }
    }
    std::sort(added.begin(), added.end(), [](const Category* a, const Category* b) { return a->precedes(*b); });
    while (!added.empty()) {  // from the end, so that the rows before it stay what they are
        const int row = rowOf(*added.back());
        QList<QStandardItem*> neighbours;
        for (; !added.empty() && rowOf(*added.back()) == row; added.pop_back())
            neighbours.prepend(added.back());
        invisibleRootItem()->insertRows(row, neighbours);
    }
}

void LibraryTreeModel::removeCategories(const std::vector<fileString>& libraries)
{
    std::vector<int> rows;
    for (const fileString& path : libraries) {
        const auto shelf = shelves_.find(path);
        if (shelf == shelves_.end())
            continue;
        for (Category* const category : std::exchange(shelf->second.categories, {}))
            rows.push_back(rowOf(*category));
    }
    std::sort(rows.begin(), rows.end(), std::greater<>());
    for (auto last = rows.begin(); last != rows.end();) {
        auto next = last;
        int first = *last;
        while (++next != rows.end() && *next == first - 1)
            first = *next;
        removeRows(first, *last - first + 1);
        last = next;
    }
}

TreeData* LibraryTreeModel::newFolder(const BrowsedLibrary& library, std::size_t folder) const
{
    return new TreeFolderData(folderId(folder), library.path, textOf(library.catalog->folders[folder].name));
}

TreeData* LibraryTreeModel::newItem(const BrowsedLibrary& library, std::size_t item) const
{
    return new TreeItemData(static_cast<long long>(item), library.path, textOf(library.catalog->items[item].name));
}

// The existing nodes stand for the first of the folder's entries; further ones are made after them.
void LibraryTreeModel::fetch(const QModelIndex& parent, std::size_t most)
{
    const std::optional<Below> children = below(parent);
    if (!children)
        return;
    const BrowsedLibrary& library = *libraryOf(*node(parent));
    const auto there = static_cast<std::size_t>(rowCount(parent));
    const std::size_t end = there + std::min(most, children->size() - there);
    QList<QStandardItem*> nodes;
    for (std::size_t i = there; i < end; ++i) {
        const bool isFolder = i < children->folders.size();
        nodes.append(isFolder ? newFolder(library, children->folders[i])
                              : newItem(library, children->items[i - children->folders.size()]));
    }
    node(parent)->appendRows(nodes);
}

/// The node of a place right below another one, or at the top.
QModelIndex LibraryTreeModel::findBelow(const QModelIndex& parent, const LibraryPlace& place)
{
    if (!parent.isValid()) {
        const std::vector<QModelIndex> among = categories(place.library);
        const auto found = std::find_if(among.begin(), among.end(),
                                        [&](const QModelIndex& index) { return placeOf(*node(index)) == place; });
        return found == among.end() ? QModelIndex() : *found;
    }
    const std::optional<Below> children = below(parent);
    if (!children)
        return {};
    const CatalogOrder::Indexes among = place.isFolder ? children->folders : children->items;
    const auto found = std::find(among.begin(), among.end(), place.index);
    if (found == among.end())
        return {};
    const std::size_t row =
        static_cast<std::size_t>(found - among.begin()) + (place.isFolder ? 0 : children->folders.size());
    const auto there = static_cast<std::size_t>(rowCount(parent));
    if (row >= there + mostForOne)
        return {};
    if (row >= there)
        fetch(parent, row + 1 - there);
    return index(static_cast<int>(row), 0, parent);
}

}  // namespace VelkHost
