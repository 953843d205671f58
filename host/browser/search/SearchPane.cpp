#include "host/browser/search/SearchPane.h"

#include "host/browser/search/SearchExplanation.h"
#include "host/browser/search/SyntaxHelp.h"
#include "host/browser/tree/LibraryDelegate.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace VelkHost {
namespace {

constexpr std::size_t mostExpanded = 1'000;  // hits in a group that is opened by itself

}  // namespace

SearchPane::SearchPane(ThumbnailCache& thumbnails, QWidget* parent)
    : QWidget(parent),
      model_(thumbnails),
      summary_(new QLabel),
      explain_(new QToolButton),
      syntax_(new QLabel),
      explanation_(new QLabel),
      view_(new QTreeView)
{
    buildHead();
    buildResults();
    buildLayout();
    connectAll();
    connect(&thumbnails, &ThumbnailCache::changed, view_->viewport(), [this] { view_->viewport()->update(); });
    retranslate();
}

void SearchPane::buildHead()
{
    summary_->setObjectName(QStringLiteral("searchSummary"));
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    explain_->setObjectName(QStringLiteral("explainButton"));
    explain_->setCheckable(true);
    explain_->setAutoRaise(true);
    syntax_->setObjectName(QStringLiteral("syntaxLink"));
    syntax_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    explanation_->setObjectName(QStringLiteral("searchExplanation"));
    explanation_->setTextFormat(Qt::PlainText);
    explanation_->setWordWrap(true);
    explanation_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    explanation_->hide();
}

void SearchPane::buildResults()
{
    view_->setObjectName(QStringLiteral("searchResults"));
    view_->setModel(&model_);
    view_->setItemDelegate(new LibraryDelegate(view_));
    view_->setHeaderHidden(true);
    view_->setUniformRowHeights(true);
    view_->setDragEnabled(true);
}

void SearchPane::buildLayout()
{
    auto* const head = new QHBoxLayout;
    head->addWidget(summary_, 1);
    head->addWidget(explain_);
    head->addWidget(syntax_);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(head);
    layout->addWidget(explanation_);
    layout->addWidget(view_, 1);
}

void SearchPane::connectAll()
{
    connect(&runner_, &SearchRunner::found, this, &SearchPane::showOutcome);
    connect(explain_, &QToolButton::toggled, explanation_, &QWidget::setVisible);
    connect(syntax_, &QLabel::linkActivated, this, [this] {
        auto* const help = new SyntaxHelp(this);
        help->setAttribute(Qt::WA_DeleteOnClose);
        help->show();
    });
    connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { Q_EMIT selected(model_.place(current)); });
    connect(view_, &QTreeView::activated, this, [this](const QModelIndex& index) {
        if (const auto place = model_.place(index))
            Q_EMIT activated(*place);
    });
}

void SearchPane::clear()
{
    if (model_.outcome() != nullptr)
        runner_.release(model_.setOutcome(nullptr));
}

bool SearchPane::isInVain() const
{
    const SearchOutcome* const outcome = model_.outcome();
    return outcome != nullptr && !outcome->info.parseTree.groups.empty() && outcome->result.size() == 0;
}

bool SearchPane::isExplained() const
{
    return explain_->isChecked();
}

void SearchPane::setExplained(bool explained)
{
    explain_->setChecked(explained);
}

void SearchPane::showOutcome(const std::shared_ptr<const SearchOutcome>& outcome)
{
    runner_.release(model_.setOutcome(outcome));
    for (int group = 0; group < model_.rowCount(); ++group) {
        const QModelIndex index = model_.index(group, 0);
        view_->setExpanded(index, group == 0 || static_cast<std::size_t>(model_.rowCount(index)) <= mostExpanded);
    }
    view_->scrollToTop();
    showSummary();
    Q_EMIT shown();
}

void SearchPane::showSummary()
{
    const SearchOutcome* const outcome = model_.outcome();
    if (outcome == nullptr)
        return;
    const int count = static_cast<int>(outcome->result.size());
    if (outcome->info.parseTree.groups.empty())
        summary_->setText(tr("There is nothing to search for yet."));
    else if (count == 0)
        summary_->setText(tr("Nothing was found. Fewer or shorter words find more."));
    else
        summary_->setText(tr("%Ln hit(s)", nullptr, count));
    explanation_->setText(explanationOf(outcome->info));
}

void SearchPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void SearchPane::retranslate()
{
    explain_->setText(tr("How it was understood"));
    syntax_->setText(QStringLiteral("<a href=\"syntax\">%1</a>").arg(tr("Search syntax").toHtmlEscaped()));
    view_->setAccessibleName(tr("Search results"));
    explanation_->setAccessibleName(tr("How the search was understood"));
    showSummary();
}

}  // namespace VelkHost
