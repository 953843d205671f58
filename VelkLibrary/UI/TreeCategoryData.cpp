#include <VelkLibrary/UI/TreeCategoryData.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/Assertions.h>

#include <utility>

namespace Library {
namespace {

constexpr const char* categorySource = "UI/TreeCategoryData";
constexpr std::size_t categoryIdLine = 17;

}  // namespace

TreeCategoryData::TreeCategoryData(long long id, LibraryCategory libraryCategory, fileString databasePath)
    : TreeData(id, std::move(databasePath)), category(libraryCategory)
{
    if (isItemId(getId()))
        Velk::assertionFailed(categorySource, categoryIdLine, "!isItemId(getId())");
}

TreeCategoryData::~TreeCategoryData() = default;

bool TreeCategoryData::isValid() const
{
    return FileUtils::pathExists(getDatabasePath());
}

}  // namespace Library
