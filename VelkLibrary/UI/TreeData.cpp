#include <VelkLibrary/UI/TreeData.h>

#include <VelkCommon/Reporting/Assertions.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <utility>

namespace Library {
namespace {

constexpr long long noId = -1;
constexpr std::int32_t noItemType = -1;

}  // namespace

TreeData::TreeData(fileString databasePath) : TreeData(noId, std::move(databasePath)) {}

TreeData::TreeData(long long id, fileString databasePath)
    : id_(id), itemType_(noItemType), databasePath_(std::move(databasePath))
{
    setFlags(Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEnabled);
}

TreeData::TreeData(const TreeData& other) = default;
TreeData& TreeData::operator=(const TreeData& other) = default;
TreeData::~TreeData() = default;

int TreeData::type() const
{
    return itemType_;
}

bool TreeData::operator<(const QStandardItem& other) const
{
    const auto* const otherNode = dynamic_cast<const TreeData*>(&other);
    if (otherNode == nullptr) {
        Velk::assertionFailed(detail::places::foreignNodeCompared, "rhsTreeData");
        return false;
    }
    return treeOrderComparatorStatic(*this, *otherNode) < 0;
}

const TreeItemData* TreeData::asItemData() const
{
    return nullptr;
}

TreeItemData* TreeData::asItemData()
{
    return const_cast<TreeItemData*>(std::as_const(*this).asItemData());
}

const TreeFolderData* TreeData::asFolderData() const
{
    return nullptr;
}

TreeFolderData* TreeData::asFolderData()
{
    return const_cast<TreeFolderData*>(std::as_const(*this).asFolderData());
}

bool TreeData::isItem() const
{
    return asItemData() != nullptr;
}

std::u32string TreeData::getItemName() const
{
    return StringConvert::toUnicode(text());
}

void TreeData::setItemName(std::u32string_view name)
{
    setText(StringConvert::toQString(name));
}

int TreeData::treeOrderComparatorStatic(const TreeData& a, const TreeData& b)
{
    if (a.isItem() != b.isItem())
        return a.isItem() ? 1 : -1;
    return QString::compare(a.text(), b.text(), Qt::CaseInsensitive);
}

}  // namespace Library
