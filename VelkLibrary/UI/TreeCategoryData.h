#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/TreeData.h>

#include <cstdint>

namespace Library {

/// What a category of the tree holds. The values are the host's: a host that wants names for them
/// defines this enumeration, and one that does not casts its numbers.
enum class LibraryCategory : std::int32_t;

/// A category: a node at the top of the tree. No drop target.
class VELKLIBRARY_EXPORT TreeCategoryData : public TreeData
{
public:
    /// `id` is below -1; another one is reported as an assertion.
    TreeCategoryData(long long id, LibraryCategory libraryCategory, fileString databasePath);
    ~TreeCategoryData() override;

    /// The database file exists.
    bool isValid() const override;

    /// What the host gave; it is not looked at here.
    LibraryCategory category;
};

}  // namespace Library
