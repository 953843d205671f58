#include "host/browser/tree/LibraryTreeModel.h"

#include "host/browser/tree/ItemDrag.h"
#include "host/browser/tree/LibraryCategories.h"
#include "host/browser/tree/LibraryDelegate.h"
#include "host/support/QtText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/UI/TreeFolderData.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QMimeData>

#include <algorithm>
#include <iterator>
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

std::u32string textOf(const std::string& name)
{
    return StringConvert::toUnicodeFromUtf8(name);
}

}  // namespace

LibraryTreeModel::LibraryTreeModel(ThumbnailCache& thumbnails, QObject* parent)
    : QStandardItemModel(parent), thumbnails_(thumbnails)
{}

void LibraryTreeModel::setPictureSide(int side)
{
    pictureSide_ = side;
}

void LibraryTreeModel::setLibrary(const BrowsedLibrary& library)
{
    const auto known = libraries_.find(library.path);
    const bool sameFolders = known != libraries_.end() && known->second.order == nullptr &&
                             known->second.catalog->folders == library.catalog->folders;
    libraries_[library.path] = library;
    if (sameFolders) {  // the outline's categories, which have nothing below them yet
        Q_EMIT layoutChanged();
        return;
    }
    removeCategories(library.path);
    if (isShown(library))
        addCategories(library);
}

void LibraryTreeModel::removeLibrary(const fileString& path)
{
    removeCategories(path);
    libraries_.erase(path);
}

void LibraryTreeModel::setShown(Shown shown)
{
    const Shown before = std::exchange(shown_, std::move(shown));
    for (const auto& [path, library] : libraries_) {
        const bool wasShown = !before || before(library);
        if (wasShown && !isShown(library))
            removeCategories(path);
        else if (!wasShown && isShown(library))
            addCategories(library);
    }
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
    const TreeData* const data = node(parent);
    if (data == nullptr || data->isItem())
        return false;
    const std::optional<Below> children = below(parent);
    return !children || children->size() > 0;  // before its items are read, a folder is taken to have some
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
    const BrowsedLibrary* const found = library(data->getDatabasePath());
    if (found == nullptr)
        return {};
    if (data->isItem())
        return dataOfItem(*found, placeOf(*data).index, role);
    const bool isCategory = !index.parent().isValid();
    return isCategory && role != Qt::DecorationRole ? qtText(found->catalog->name) : QVariant();
}

QVariant LibraryTreeModel::dataOfItem(const BrowsedLibrary& library, std::size_t index, int role) const
{
    if (index >= library.catalog->items.size() || role == LibraryDelegate::QuietTextRole)
        return {};
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

/// The entries of a category or folder; empty while they are not read, and for an item.
std::optional<LibraryTreeModel::Below> LibraryTreeModel::below(const QModelIndex& index) const
{
    const TreeData* const data = node(index);
    const BrowsedLibrary* const found = data == nullptr || data->isItem() ? nullptr : library(data->getDatabasePath());
    if (found == nullptr || found->order == nullptr)
        return std::nullopt;
    const std::size_t folder = placeOf(*data).index;
    return Below{found->order->foldersIn(folder), found->order->itemsIn(folder)};
}

void LibraryTreeModel::addCategories(const BrowsedLibrary& library)
{
    const std::vector<Folder>& folders = library.catalog->folders;
    for (std::size_t i = 0; i < folders.size(); ++i) {
        if (folders[i].parent != Folder::noParent)
            continue;
        auto* const category =
            new TreeCategoryData(folderId(i), static_cast<LibraryCategory>(library.catalog->kind), library.path);
        category->setItemName(textOf(folders[i].name));
        int row = rowCount();
        while (row > 0 && TreeData::treeOrderComparatorStatic(*category, *node(index(row - 1, 0))) < 0)
            --row;
        insertRow(row, category);
    }
}

void LibraryTreeModel::removeCategories(const fileString& path)
{
    for (int row = rowCount(); row-- > 0;) {
        if (node(index(row, 0))->getDatabasePath() == path)
            removeRow(row);
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
    const BrowsedLibrary& library = *this->library(node(parent)->getDatabasePath());
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
        for (int row = 0; row < rowCount(); ++row)
            if (placeOf(*node(index(row, 0))) == place)
                return index(row, 0);
        return {};
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
