#include <VelkLibrary/UI/TreeFolderData.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/Assertions.h>

#include <utility>

namespace Library {
namespace {

constexpr const char* folderSource = "UI/TreeFolderData";
constexpr std::size_t folderIdLine = 15;

}  // namespace

TreeFolderData::TreeFolderData(long long id, fileString databasePath) : TreeData(id, std::move(databasePath))
{
    if (isItemId(getId()))
        Velk::assertionFailed(folderSource, folderIdLine, "!isItemId(getId())");
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
