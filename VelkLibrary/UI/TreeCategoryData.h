#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/TreeData.h>

#include <cstdint>

namespace Library {

/// What a category of the tree holds. The values are the host's: a host that wants names for them
/// defines this enumeration, and a host that does not casts its numbers.
enum class LibraryCategory : std::int32_t;

/// A category: a node at the top of the tree. Nothing can be dropped on it.
class VELKLIBRARY_EXPORT TreeCategoryData : public TreeData
{
public:
    /// `id` is below -1; any other id is reported as an assertion.
    TreeCategoryData(long long id, LibraryCategory libraryCategory, fileString databasePath);
    ~TreeCategoryData() override;

    /// Whether the catalog file exists.
    bool isValid() const override;

    /// What the host gave. The module does not look at it.
    LibraryCategory category;
};

}  // namespace Library
