#pragma once

#include "host/browser/search/SearchResultModel.h"
#include "host/browser/search/SearchRunner.h"

#include <QWidget>

#include <memory>

class QLabel;
class QToolButton;
class QTreeView;

namespace VelkHost {

/// The hits of the search for the typed text, how the text was understood, and a link to the syntax.
class SearchPane : public QWidget
{
    Q_OBJECT

public:
    explicit SearchPane(ThumbnailCache& thumbnails, QWidget* parent = nullptr);

    SearchRunner& runner() { return runner_; }
    SearchResultModel& model() { return model_; }
    QTreeView* view() const { return view_; }

    /// Shows nothing.
    void clear();

    /// Whether the search whose outcome is shown found nothing.
    bool isInVain() const;

    /// Whether the pane says how the text is understood.
    bool isExplained() const;
    void setExplained(bool explained);

Q_SIGNALS:
    /// A hit was selected; empty when it was a group.
    void selected(const std::optional<VelkHost::LibraryPlace>& place);
    /// A hit was double-clicked, or Enter pressed on it.
    void activated(const VelkHost::LibraryPlace& place);
    /// The outcome of a search is shown.
    void shown();

protected:
    void changeEvent(QEvent* event) override;

private:
    void buildHead();
    void buildResults();
    void buildLayout();
    void connectAll();
    void showOutcome(const std::shared_ptr<const SearchOutcome>& outcome);
    void showSummary();
    void retranslate();

    SearchRunner runner_;
    SearchResultModel model_;
    QLabel* const summary_;
    QToolButton* const explain_;
    QLabel* const syntax_;
    QLabel* const explanation_;
    QTreeView* const view_;
};

}  // namespace VelkHost
