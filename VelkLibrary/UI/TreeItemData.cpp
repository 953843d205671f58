#include <VelkLibrary/UI/TreeItemData.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <utility>

namespace Library {

TreeItemData::TreeItemData() : TreeItemData(-1, fileString()) {}

TreeItemData::TreeItemData(long long id, fileString databasePath)
    : TreeItemData(id, std::move(databasePath), std::u32string())
{}

TreeItemData::TreeItemData(long long id, fileString databasePath, const std::u32string& name)
    : TreeData(id, std::move(databasePath))
{
    if (!isItemId(getId()))
        Velk::assertionFailed(detail::places::itemWithOtherId, "isItemId(getId())");
    setItemName(name);
}

TreeItemData::TreeItemData(const TreeItemData& other) = default;
TreeItemData& TreeItemData::operator=(const TreeItemData& other) = default;
TreeItemData::~TreeItemData() = default;

bool TreeItemData::isValid() const
{
    return getId() >= 0 && FileUtils::pathExists(getDatabasePath());
}

const TreeItemData* TreeItemData::asItemData() const
{
    return this;
}

bool TreeItemData::operator==(const TreeItemData& other) const
{
    return getDatabasePath() == other.getDatabasePath() && getId() == other.getId() &&
           selectionPaneName_ == other.selectionPaneName_;
}

std::u32string TreeItemData::getSelectionPaneName() const
{
    return selectionPaneName_;
}

void TreeItemData::setSelectionPaneName(std::u32string name)
{
    selectionPaneName_ = std::move(name);
}

bool TreeItemDataLessThan::operator()(const TreeItemData& a, const TreeItemData& b) const
{
    if (a.getDatabasePath() == b.getDatabasePath())
        return a.getId() < b.getId();
    return a.getDatabasePath() < b.getDatabasePath();
}

}  // namespace Library
