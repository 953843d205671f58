#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/TreeData.h>

#include <string>

namespace Library {

/// A library item (an object, a material, ...), a leaf of the tree. Can be copied.
class VELKLIBRARY_EXPORT TreeItemData : public TreeData
{
public:
    /// Stands for no item: id -1, no catalog file, no name. Never valid.
    TreeItemData();
    /// An item without a name. `id` is -1 or more; any other id is reported as an assertion.
    TreeItemData(long long id, fileString databasePath);
    /// An item with a name; the same holds for `id`.
    TreeItemData(long long id, fileString databasePath, const std::u32string& name);
    TreeItemData(const TreeItemData& other);             ///< a copy without children
    TreeItemData& operator=(const TreeItemData& other);  ///< first text, flags and data, then the fields
    ~TreeItemData() override;

    /// Whether the catalog file exists and the id is 0 or more.
    bool isValid() const override;

    using TreeData::asItemData;
    const TreeItemData* asItemData() const override;

    /// Whether both are the same item: equal catalog files, ids and selection pane names. The name in the tree
    /// does not count.
    bool operator==(const TreeItemData& other) const;

    /// The name that the selection pane shows; empty until it is set.
    /// @{
    std::u32string getSelectionPaneName() const;
    void setSelectionPaneName(std::u32string name);
    /// @}

private:
    std::u32string selectionPaneName_;
};

/// An order of items for sets and maps: by the catalog file's path, then by id. Names do not count, so two
/// items that are not equal may be equivalent here.
struct VELKLIBRARY_EXPORT TreeItemDataLessThan
{
    /// Whether `a` comes before `b`.
    bool operator()(const TreeItemData& a, const TreeItemData& b) const;
};

}  // namespace Library
