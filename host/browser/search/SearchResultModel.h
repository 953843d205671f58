#pragma once

#include "host/browser/search/SearchRunner.h"
#include "host/browser/tree/LibraryTreeModel.h"
#include "host/browser/tree/ThumbnailCache.h"

#include <QAbstractItemModel>

#include <memory>
#include <optional>
#include <vector>

namespace VelkHost {

/// The hits of a search, in a group for each kind of match, best first. Nothing is made for a hit until it is
/// painted.
class SearchResultModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit SearchResultModel(ThumbnailCache& thumbnails, QObject* parent = nullptr);

    /// The side of the pictures, in the screen's pixels.
    void setPictureSide(int side);

    /// Shows an outcome; nothing when it is null. Returns the one that was shown before.
    std::shared_ptr<const SearchOutcome> setOutcome(std::shared_ptr<const SearchOutcome> outcome);
    const SearchOutcome* outcome() const { return outcome_.get(); }

    /// The place that a row stands for; empty for groups.
    std::optional<LibraryPlace> place(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// The drag of the first item among `indexes`, see dragOf(); null when there is no item among them.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

private:
    using Group = SearchResult::Group;

    /// Of a row that is a hit.
    std::optional<Hit> hit(const QModelIndex& index) const;
    const LoadedLibrary& libraryOf(const Hit& hit) const;
    QVariant groupData(const Group& group, int role) const;
    QVariant hitData(const Hit& hit, int role) const;
    QVariant picture(const Hit& hit) const;
    static QString title(SearchPriority priority);

    ThumbnailCache& thumbnails_;
    std::shared_ptr<const SearchOutcome> outcome_;
    std::vector<std::u32string> lowerTerms_;
    int pictureSide_ = 32;
};

}  // namespace VelkHost
