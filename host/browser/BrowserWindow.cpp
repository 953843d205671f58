#include "host/browser/BrowserWindow.h"

#include "host/browser/DetailPane.h"
#include "host/browser/LibraryDelegate.h"
#include "host/command/LibrarySearch.h"
#include "host/support/QtText.h"

#include <VelkLibrary/UI/Chooser.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace VelkHost {
namespace {

constexpr int messageMilliseconds = 8'000;

}  // namespace

BrowserWindow::BrowserWindow(QWidget* parent) : QMainWindow(parent), model_(thumbnails_)
{
    setObjectName(QStringLiteral("browserWindow"));
    setWindowTitle(tr("Libraries"));
    resize(1000, 700);
    buildTree();
    buildLayout();
    buildMenus();
    connect(&loader_, &LibraryLoader::libraryRead, this, [this](const BrowsedLibrary& library) {
        model_.setLibrary(library);
        showEmptyOrTree();
    });
    connect(&loader_, &LibraryLoader::libraryFailed, this, [this](const fileString& path, const QString& reason) {
        model_.removeLibrary(path);
        showMessage(tr("%1 cannot be read: %2").arg(qtText(path.stem().utf8()), reason));
    });
    connect(&loader_, &LibraryLoader::finished, this, [this] {
        showEmptyOrTree();
        Q_EMIT librariesRead();
    });
}

BrowserWindow::~BrowserWindow() = default;

void BrowserWindow::readLibraries()
{
    loader_.read(installedLibraryFiles());
}

void BrowserWindow::buildTree()
{
    tree_ = new QTreeView;
    tree_->setObjectName(QStringLiteral("libraryTree"));
    tree_->setAccessibleName(tr("Libraries"));
    tree_->setModel(&model_);
    tree_->setHeaderHidden(true);
    tree_->setUniformRowHeights(true);
    tree_->setItemDelegate(new LibraryDelegate(tree_));
    tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree_->setDragEnabled(true);
    model_.setPictureSide(static_cast<int>(LibraryDelegate::pictureSide * devicePixelRatioF()));
    connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &BrowserWindow::showSelected);
    connect(tree_, &QTreeView::activated, this, &BrowserWindow::chooseSelected);
    connect(&thumbnails_, &ThumbnailCache::changed, tree_->viewport(), [this] { tree_->viewport()->update(); });
}

void BrowserWindow::buildLayout()
{
    empty_ = new QLabel;
    empty_->setObjectName(QStringLiteral("emptyState"));
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    pages_ = new QStackedWidget;
    pages_->addWidget(empty_);
    pages_->addWidget(tree_);
    searchBox_ = new QLineEdit;
    searchBox_->setObjectName(QStringLiteral("searchBox"));
    searchBox_->setClearButtonEnabled(true);
    searchBox_->setPlaceholderText(tr("Search the libraries"));
    searchBox_->setAccessibleName(tr("Search"));
    auto* const left = new QWidget;
    auto* const leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(8, 8, 0, 8);
    leftLayout->addWidget(searchBox_);
    leftLayout->addWidget(pages_);

    details_ = new DetailPane(thumbnails_);
    connect(details_, &DetailPane::chosen, this, &BrowserWindow::chooseSelected);
    auto* const columns = new QSplitter(Qt::Horizontal);
    columns->setObjectName(QStringLiteral("columnSplitter"));
    columns->addWidget(left);
    columns->addWidget(details_);
    columns->setStretchFactor(0, 1);
    columns->setSizes({640, 360});
    columns->setChildrenCollapsible(false);
    mainSplitter_ = new QSplitter(Qt::Vertical);
    mainSplitter_->setObjectName(QStringLiteral("libMainSplitter"));
    mainSplitter_->addWidget(columns);
    setCentralWidget(mainSplitter_);
    statusBar()->setObjectName(QStringLiteral("statusBar"));
    showEmptyOrTree();
}

void BrowserWindow::buildMenus()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);
}

void BrowserWindow::showSelected()
{
    const std::optional<LibraryPlace> place = model_.place(tree_->currentIndex());
    details_->show(place ? model_.library(place->library) : nullptr, place.value_or(LibraryPlace()));
}

void BrowserWindow::chooseSelected()
{
    const auto* const node = dynamic_cast<const Library::TreeData*>(model_.itemFromIndex(tree_->currentIndex()));
    const Library::TreeItemData* const item = node == nullptr ? nullptr : node->asItemData();
    if (item == nullptr)
        return;
    Library::Chooser::get().setData(*item);
    showMessage(tr("Chosen: %1").arg(item->text()));
}

void BrowserWindow::showMessage(const QString& text)
{
    statusBar()->showMessage(text, messageMilliseconds);
}

void BrowserWindow::showEmptyOrTree()
{
    empty_->setText(
        tr("No libraries are installed.\n\nCheck for updates to fetch those of the content service, or drop "
           "a packed library (.calibz) here."));
    pages_->setCurrentWidget(model_.rowCount() == 0 ? static_cast<QWidget*>(empty_) : tree_);
}

}  // namespace VelkHost
