#include <VelkLibrary/UI/TreeCategoryData.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <utility>

namespace Library {

TreeCategoryData::TreeCategoryData(long long id, LibraryCategory libraryCategory, fileString databasePath)
    : TreeData(id, std::move(databasePath)), category(libraryCategory)
{
    if (isItemId(getId()))
        Velk::assertionFailed(detail::places::categoryWithItemId, "!isItemId(getId())");
}

TreeCategoryData::~TreeCategoryData() = default;

bool TreeCategoryData::isValid() const
{
    return FileUtils::pathExists(getDatabasePath());
}

}  // namespace Library
