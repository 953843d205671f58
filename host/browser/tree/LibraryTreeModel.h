#pragma once

#include "host/browser/tree/LibraryLoader.h"
#include "host/browser/tree/ThumbnailCache.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/UI/TreeData.h>

#include <QStandardItemModel>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace VelkHost {

/// A place in a library: one of its folders (categories included), or one of its items.
struct LibraryPlace
{
    fileString library;
    bool isFolder = false;
    std::size_t index = 0;  ///< in the catalog's folders or items

    bool operator==(const LibraryPlace&) const = default;
};

/// The libraries as a tree of categories, folders and items, in tree order. The categories of all libraries
/// stand at the top; the entries of a folder become nodes when a view asks for them, some hundred at a time, so
/// that a library of a million items shows at once.
class LibraryTreeModel : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit LibraryTreeModel(ThumbnailCache& thumbnails, QObject* parent = nullptr);

    /// The side of the pictures, in the screen's pixels.
    void setPictureSide(int side);

    /// Adds a library, or replaces its content.
    void setLibrary(const BrowsedLibrary& library);
    void removeLibrary(const fileString& path);

    using Shown = std::function<bool(const BrowsedLibrary&)>;
    /// Sets which libraries are in the tree; at first all of them are. Libraries that stay in it are not touched.
    void setShown(Shown shown);
    bool isShown(const BrowsedLibrary& library) const { return !shown_ || shown_(library); }

    /// All libraries, shown or not, by path.
    const std::map<fileString, BrowsedLibrary>& libraries() const { return libraries_; }
    const BrowsedLibrary* library(const fileString& path) const;

    /// The place that an index stands for; empty for the root.
    std::optional<LibraryPlace> place(const QModelIndex& index) const;
    /// The index of a place; makes its node and those above it when they do not exist yet. Invalid when the
    /// place is not in the tree, and for an item for which tens of thousands of nodes would have to be made.
    QModelIndex find(const LibraryPlace& place);
    /// The folder of those names, from the category down.
    std::optional<LibraryPlace> folderNamed(const fileString& library, const QStringList& names) const;
    /// The item of that unique id.
    std::optional<LibraryPlace> itemNamed(const fileString& library, const std::string& uniqueId) const;

    bool hasChildren(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// The drag of the first item among `indexes`, see dragOf(); null when there is no item among them.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override;

private:
    struct Below
    {
        CatalogOrder::Indexes folders;
        CatalogOrder::Indexes items;
        std::size_t size() const { return folders.size() + items.size(); }
    };

    Library::TreeData* node(const QModelIndex& index) const;
    QVariant dataOfItem(const BrowsedLibrary& library, std::size_t index, int role) const;
    std::optional<Below> below(const QModelIndex& index) const;
    void addCategories(const BrowsedLibrary& library);
    void removeCategories(const fileString& path);
    Library::TreeData* newFolder(const BrowsedLibrary& library, std::size_t folder) const;
    Library::TreeData* newItem(const BrowsedLibrary& library, std::size_t item) const;
    void fetch(const QModelIndex& parent, std::size_t most);
    QModelIndex findBelow(const QModelIndex& parent, const LibraryPlace& place);

    ThumbnailCache& thumbnails_;
    std::map<fileString, BrowsedLibrary> libraries_;
    Shown shown_;
    int pictureSide_ = 32;
};

}  // namespace VelkHost
