#pragma once

#include "host/browser/tree/CatalogOrder.h"
#include "host/browser/tree/LibraryTreeModel.h"

#include <QPersistentModelIndex>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

class QTreeView;

namespace VelkHost {

/// The state of a library in the tree: which of its folders are open, what is selected, and what stands at the top
/// of the view. It is kept by names and unique ids, so that it can be restored with another version of the library.
class TreeState
{
public:
    /// Keeps the state of the library at `library`. Tree and model outlive the object.
    TreeState(QTreeView& tree, LibraryTreeModel& model, const fileString& library);

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
        QStringList folders;
        std::string uniqueId;  // empty for a folder
    };

    void restoreScrolling() const;
    std::vector<OpenFolder> openFolders(const QModelIndex& parent) const;
    std::optional<NamedPlace> named(const QModelIndex& index) const;
    void open(const std::vector<OpenFolder>& folders, CatalogOrder::Indexes among) const;
    QModelIndex find(const NamedPlace& place) const;
    QModelIndex findNear(NamedPlace place) const;
    QModelIndex inView(const QModelIndex& index) const;

    QTreeView& tree_;
    LibraryTreeModel& model_;
    const fileString library_;
    std::vector<OpenFolder> open_;
    std::optional<NamedPlace> current_;
    std::optional<NamedPlace> top_;       // in this library
    QPersistentModelIndex topElsewhere_;  // in another one
    bool scrolled_ = false;
    int horizontal_ = 0;
};

}  // namespace VelkHost
