#pragma once

#include "host/browser/tree/CatalogOrder.h"
#include "host/browser/tree/LibraryTreeModel.h"

#include <QPersistentModelIndex>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

class QTreeView;

namespace VelkHost {

/// The state of some libraries in the tree: which of their folders are open, what is selected, and what stands at the
/// top of the view. It is kept by names and unique ids, so that it can be restored with other versions of the
/// libraries.
class TreeState
{
public:
    /// Keeps the state of the libraries at these paths. Tree and model outlive the object.
    TreeState(QTreeView& tree, LibraryTreeModel& model, const std::set<fileString>& libraries);

    /// Restores the state of the entries that still exist. In place of a selected entry that is gone, the closest
    /// folder above it is selected.
    void restore() const;

private:
    /// An open folder and those in it.
    struct OpenFolder
    {
        QString name;
        std::vector<OpenFolder> folders;
    };
    /// A folder by its names; or an item by its id, in the folder of those names.
    struct NamedPlace
    {
        fileString library;
        QStringList folders;
        std::string uniqueId;  // empty for a folder
    };

    void restoreScrolling() const;
    std::vector<OpenFolder> openAmong(const std::vector<QModelIndex>& siblings) const;
    std::vector<QModelIndex> foldersIn(const QModelIndex& folder) const;
    std::optional<NamedPlace> named(const QModelIndex& index, const std::set<fileString>& libraries) const;
    void open(const std::vector<OpenFolder>& folders, const BrowsedLibrary& library, CatalogOrder::Indexes among) const;
    QModelIndex find(const NamedPlace& place) const;
    QModelIndex findNear(NamedPlace place) const;
    QModelIndex inView(const QModelIndex& index) const;

    QTreeView& tree_;
    LibraryTreeModel& model_;
    std::map<fileString, std::vector<OpenFolder>> open_;  // of libraries that have any
    std::optional<NamedPlace> current_;
    std::optional<NamedPlace> top_;       // in one of these libraries
    QPersistentModelIndex topElsewhere_;  // in another one
    bool scrolled_ = false;
    int horizontal_ = 0;
};

}  // namespace VelkHost
