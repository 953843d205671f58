#include "host/browser/search/SearchResultModel.h"

#include "host/browser/tree/ItemDrag.h"
#include "host/browser/tree/LibraryDelegate.h"
#include "host/browser/tree/ShownSize.h"
#include "host/installation/SearchText.h"
#include "host/support/DisplayText.h"
#include "host/support/QtText.h"

#include <QFont>
#include <QLocale>
#include <QMimeData>
#include <QPoint>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

constexpr quintptr groupLevel = 0;  // the internal id of groups; that of hits is their group's row plus one

/// The marked parts of a styled text, in Qt's units.
QVector<QPoint> markedParts(const StyledText& styled)
{
    QVector<QPoint> parts;
    int at = 0;
    bool inside = false;
    for (std::size_t i = 0; i < styled.text.size(); ++i) {
        const int units = QChar::requiresSurrogates(styled.text[i]) ? 2 : 1;
        if (styled.bold[i] && !inside)
            parts.append({at, 0});
        if (styled.bold[i])
            parts.back().ry() += units;
        inside = styled.bold[i];
        at += units;
    }
    return parts;
}

}  // namespace

SearchResultModel::SearchResultModel(ThumbnailCache& thumbnails, QObject* parent)
    : QAbstractItemModel(parent), thumbnails_(thumbnails)
{}

void SearchResultModel::setPictureSide(int side)
{
    pictureSide_ = side;
}

std::shared_ptr<const SearchOutcome> SearchResultModel::setOutcome(std::shared_ptr<const SearchOutcome> outcome)
{
    beginResetModel();
    std::shared_ptr<const SearchOutcome> before = std::exchange(outcome_, std::move(outcome));
    lowerTerms_.clear();
    if (outcome_ != nullptr)
        lowerTerms_ = lowerTerms(outcome_->info);
    endResetModel();
    return before;
}

std::optional<LibraryPlace> SearchResultModel::place(const QModelIndex& index) const
{
    const std::optional<Hit> found = hit(index);
    if (!found)
        return std::nullopt;
    return LibraryPlace{libraryOf(*found).path, found->isFolder, found->index};
}

QModelIndex SearchResultModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : groupLevel);
}

QModelIndex SearchResultModel::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == groupLevel)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, groupLevel);
}

int SearchResultModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return outcome_ == nullptr ? 0 : static_cast<int>(outcome_->result.groups.size());
    if (parent.internalId() != groupLevel || parent.column() != 0)
        return 0;
    const Group& group = outcome_->result.groups[static_cast<std::size_t>(parent.row())];
    return static_cast<int>(group.end - group.begin);
}

int SearchResultModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant SearchResultModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const std::optional<Hit> found = hit(index);
    return found ? hitData(*found, role)
                 : groupData(outcome_->result.groups[static_cast<std::size_t>(index.row())], role);
}

Qt::ItemFlags SearchResultModel::flags(const QModelIndex& index) const
{
    const std::optional<Hit> found = hit(index);
    if (!found)
        return Qt::ItemIsEnabled;
    const Qt::ItemFlags selectable = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return found->isFolder ? selectable : selectable | Qt::ItemIsDragEnabled;
}

QMimeData* SearchResultModel::mimeData(const QModelIndexList& indexes) const
{
    for (const QModelIndex& index : indexes) {
        const std::optional<Hit> dragged = hit(index);
        if (!dragged || dragged->isFolder)
            continue;
        const LoadedLibrary& library = libraryOf(*dragged);
        return dragOf(library.path, *library.catalog, dragged->index, picture(*dragged).value<QPixmap>());
    }
    return nullptr;
}

std::optional<Hit> SearchResultModel::hit(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == groupLevel)
        return std::nullopt;
    const Group& group = outcome_->result.groups[index.internalId() - 1];
    return outcome_->result.hit(group.begin + static_cast<std::size_t>(index.row()));
}

const LoadedLibrary& SearchResultModel::libraryOf(const Hit& hit) const
{
    return *outcome_->result.state->libraries()[hit.library];
}

QVariant SearchResultModel::groupData(const Group& group, int role) const
{
    if (role == Qt::DisplayRole)
        return title(group.priority);
    if (role == LibraryDelegate::QuietTextRole)
        return QLocale().toString(static_cast<qulonglong>(group.end - group.begin));
    if (role == Qt::FontRole) {
        QFont font;
        font.setBold(true);
        return font;
    }
    return {};
}

QVariant SearchResultModel::hitData(const Hit& hit, int role) const
{
    const Catalog& catalog = *libraryOf(hit).catalog;
    switch (role) {
        case Qt::DisplayRole:
            return qtText(hitName(catalog, hit));
        case LibraryDelegate::MatchesRole:
            return QVariant::fromValue(markedParts(highlighted(hitName(catalog, hit), lowerTerms_)));
        case LibraryDelegate::PictureRole:
            return true;
        case LibraryDelegate::QuietTextRole: {
            QStringList names(qtText(catalog.name));
            for (const std::string& name : hitPath(catalog, hit))
                names.append(qtText(name));
            const QString place = names.join(QStringLiteral(" \u203A "));
            const QString size = hit.isFolder ? QString() : shownSize(catalog.sizeOf(hit.index));
            return size.isEmpty() ? place : size + QStringLiteral(" \u00B7 ") + place;
        }
        case Qt::ToolTipRole:
            return hit.isFolder ? QVariant() : qtText(catalog.items[hit.index].keywords).toHtmlEscaped();
        case Qt::DecorationRole:
            return picture(hit);
        default:
            return {};
    }
}

QVariant SearchResultModel::picture(const Hit& hit) const
{
    if (hit.isFolder)
        return {};
    const LoadedLibrary& library = libraryOf(hit);
    return thumbnails_.find({library.path, library.catalog->items[hit.index].uniqueId, pictureSide_});
}

QString SearchResultModel::title(SearchPriority priority)
{
    switch (priority) {
        case ItemExactName:
            return tr("Items of this name");
        case FolderExactName:
            return tr("Folders of this name");
        case ItemBeginsWithWord:
            return tr("Items that begin with the word");
        case FolderBeginsWithWord:
            return tr("Folders that begin with the word");
        case ItemContainsWord:
            return tr("Items with the word");
        case FolderContainsWord:
            return tr("Folders with the word");
        case ItemBeginsWithSequence:
            return tr("Items that begin with these letters");
        case FolderBeginsWithSequence:
            return tr("Folders that begin with these letters");
        case KeywordsContainWord:
            return tr("Items with the word as a keyword");
        case ItemWordBeginsWithSequence:
            return tr("Items with a word that begins like this");
        case FolderWordBeginsWithSequence:
            return tr("Folders with a word that begins like this");
        case ItemContainsSequence:
            return tr("Items with these letters");
        case FolderContainsSequence:
            return tr("Folders with these letters");
        case KeywordsContainSequence:
            return tr("Items with these letters in a keyword");
        default:
            return {};
    }
}

}  // namespace VelkHost
