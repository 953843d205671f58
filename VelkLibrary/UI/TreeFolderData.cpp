#include <VelkLibrary/UI/TreeFolderData.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <utility>

namespace Library {

TreeFolderData::TreeFolderData(long long id, fileString databasePath) : TreeData(id, std::move(databasePath))
{
    if (isItemId(getId()))
        Velk::assertionFailed(detail::places::folderWithItemId, "!isItemId(getId())");
    setFlags(flags() | Qt::ItemIsDropEnabled);
}

TreeFolderData::TreeFolderData(long long id, fileString databasePath, const std::u32string& name)
    : TreeFolderData(id, std::move(databasePath))
{
    setItemName(name);
}

TreeFolderData::~TreeFolderData() = default;

bool TreeFolderData::isValid() const
{
    return FileUtils::pathExists(getDatabasePath());
}

const TreeFolderData* TreeFolderData::asFolderData() const
{
    return this;
}

}  // namespace Library
