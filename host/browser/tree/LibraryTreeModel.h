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

    /// Takes over what has been read: adds libraries, replaces their content, and removes those that cannot be read.
    /// What is no news changes nothing. Returns what was replaced, for the caller to free where it holds nobody up.
    std::vector<BrowsedLibrary> take(const std::vector<LibraryArrival>& arrivals);

    /// False for the outline of a library that is here completely: while a new version is read, the old one stays.
    bool isNews(const BrowsedLibrary& library) const { return isNews(library, this->library(library.path)); }

    using Shown = std::function<bool(const BrowsedLibrary&)>;
    /// Sets which libraries are in the tree; at first all of them are. Libraries that stay in it are not touched.
    void setShown(Shown shown);
    bool isShown(const BrowsedLibrary& library) const { return !shown_ || shown_(library); }

    /// All libraries, shown or not, by path.
    const std::map<fileString, BrowsedLibrary>& libraries() const { return libraries_; }
    const BrowsedLibrary* library(const fileString& path) const;

    /// The categories of a library that are in the tree.
    std::vector<QModelIndex> categories(const fileString& library) const;

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
    Qt::ItemFlags flags(const QModelIndex& index) const override;
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

    class Category;

    /// A library's rows at the top of the tree.
    struct Shelf
    {
        std::size_t rank = 0;  // libraries whose categories have the same name stand in the order of their arrival
        std::vector<Category*> categories;
    };

    /// The last of the arrivals that counts, for each library.
    using News = std::map<fileString, const BrowsedLibrary*>;

    Library::TreeData* node(const QModelIndex& index) const;
    const BrowsedLibrary* libraryOf(const Library::TreeData& node) const;
    QVariant dataOfItem(const BrowsedLibrary& library, std::size_t index, int role) const;
    std::optional<Below> below(const QModelIndex& index) const;
    static bool isNews(const BrowsedLibrary& library, const BrowsedLibrary* known);
    News newsOf(const std::vector<LibraryArrival>& arrivals);
    bool keepsCategories(const BrowsedLibrary& library) const;
    std::vector<BrowsedLibrary> replaceBy(const News& news);
    const Category& category(int row) const;
    int rowOf(const Category& category) const;
    void addCategories(const std::vector<fileString>& libraries);
    void removeCategories(const std::vector<fileString>& libraries);
    Library::TreeData* newFolder(const BrowsedLibrary& library, std::size_t folder) const;
    Library::TreeData* newItem(const BrowsedLibrary& library, std::size_t item) const;
    void fetch(const QModelIndex& parent, std::size_t most);
    QModelIndex findBelow(const QModelIndex& parent, const LibraryPlace& place);

    ThumbnailCache& thumbnails_;
    std::map<fileString, BrowsedLibrary> libraries_;
    std::map<fileString, Shelf> shelves_;  // of the libraries
    std::size_t nextRank_ = 0;
    Shown shown_;
    int pictureSide_ = 32;
};

}  // namespace VelkHost
