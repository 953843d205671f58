#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <QStandardItem>

#include <cstdint>
#include <string>
#include <string_view>

namespace Library {

class TreeFolderData;
class TreeItemData;

/// A node of the browser's tree: a category, a folder or a library item. It knows the catalog file that it
/// comes from and its id there; its name is the text of the QStandardItem.
///
/// Ids from -1 upwards belong to items, where -1 stands for an item without an id, which is never valid;
/// categories and folders carry ids below -1. A node with an id of the wrong kind is reported as an assertion
/// and made all the same.
///
/// Nodes can be selected and dragged; folders alone are drop targets. A model owns the nodes that it was
/// given. What the host keeps in further data roles is its own business. Copies have the text, flags,
/// data and id of the node, but neither its children nor its place in a model.
///
/// Belongs to the user-interface thread; while a node is in no model, one thread at a time may use it.
class VELKLIBRARY_EXPORT TreeData : public QStandardItem
{
public:
    /// A node of that catalog file, without an id (-1).
    explicit TreeData(fileString databasePath);
    /// A node of that catalog file.
    TreeData(long long id, fileString databasePath);
    ~TreeData() override;

    /// -1, whatever the node is. asItemData() and asFolderData() tell what it is.
    int type() const override;

    /// The order of the tree, see treeOrderComparatorStatic(); what Qt sorts a model by. Reports an
    /// assertion and returns false when `other` is not a TreeData.
    bool operator<(const QStandardItem& other) const override;

    /// Whether what the node stands for can exist: its catalog file exists, and for an item the id is 0 or
    /// more. Looks at the disk each time.
    virtual bool isValid() const = 0;

    /// The node as a library item; null when it is not an item. No dynamic cast.
    /// @{
    TreeItemData* asItemData();
    virtual const TreeItemData* asItemData() const;
    /// @}

    /// The node as a folder; null when it is not a folder, and a category is not one. No dynamic cast.
    /// @{
    TreeFolderData* asFolderData();
    virtual const TreeFolderData* asFolderData() const;
    /// @}

    /// Whether the node is a library item.
    bool isItem() const;

    /// The id in the catalog file; -1 when none was given.
    long long getId() const noexcept { return id_; }

    /// Whether an id is that of an item: -1 or more.
    static bool isItemId(long long id) noexcept { return id >= -1; }

    /// The catalog file that the node belongs to. Valid as long as the node lives and is not assigned to.
    const fileString& getDatabasePath() const noexcept { return databasePath_; }

    /// The name that the tree shows.
    /// @{
    std::u32string getItemName() const;
    void setItemName(std::u32string_view name);
    /// @}

    /// The order of the tree: categories and folders before items, otherwise by name without regard to
    /// letter case. Negative when `a` comes first, positive when `b` does, zero when neither does. Ids and
    /// catalog files do not count.
    static int treeOrderComparatorStatic(const TreeData& a, const TreeData& b);

protected:
    TreeData(const TreeData& other);             ///< a copy without children
    TreeData& operator=(const TreeData& other);  ///< leaves the children as they are

private:
    long long id_;
    std::int32_t itemType_;
    fileString databasePath_;
};

}  // namespace Library
