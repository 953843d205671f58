#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/TreeData.h>

namespace Library {

/// A folder of the tree, the only kind of node that things can be dropped on.
class VELKLIBRARY_EXPORT TreeFolderData : public TreeData
{
public:
    /// A folder without a name. `id` is below -1; any other id is reported as an assertion.
    TreeFolderData(long long id, fileString databasePath);
    /// A folder with a name; the same holds for `id`.
    TreeFolderData(long long id, fileString databasePath, const std::u32string& name);
    ~TreeFolderData() override;

    /// Whether the catalog file exists.
    bool isValid() const override;

    using TreeData::asFolderData;
    const TreeFolderData* asFolderData() const override;
};

}  // namespace Library
