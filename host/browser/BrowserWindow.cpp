#include "host/browser/BrowserWindow.h"

#include "host/browser/DetailPane.h"
#include "host/browser/StoredPreferences.h"
#include "host/browser/WindowState.h"
#include "host/browser/Worker.h"
#include "host/browser/filters/FilterMenu.h"
#include "host/browser/filters/HiddenNote.h"
#include "host/browser/filters/KindMenu.h"
#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/jobs/LibraryDrop.h"
#include "host/browser/jobs/LibraryJobs.h"
#include "host/browser/manufacturers/ManufacturerMenu.h"
#include "host/browser/manufacturers/ManufacturerPane.h"
#include "host/browser/search/SearchPane.h"
#include "host/browser/tree/LibraryDelegate.h"
#include "host/browser/tree/TreeState.h"
#include "host/support/QtText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/UI/Chooser.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

namespace VelkHost {
namespace {

constexpr int messageMilliseconds = 8'000;

bool holds(const BrowsedLibrary* library, const LibraryPlace& place)
{
    return library != nullptr &&
           place.index < (place.isFolder ? library->catalog->folders.size() : library->catalog->items.size());
}

/// The unique id of an item; empty for a folder, and for a place that the library does not have.
std::string idOf(const BrowsedLibrary* library, const LibraryPlace& place)
{
    return holds(library, place) && !place.isFolder ? library->catalog->items[place.index].uniqueId : std::string();
}

}  // namespace

BrowserWindow::BrowserWindow(BrowserOptions options, QWidget* parent)
    : QMainWindow(parent), options_(std::move(options)), model_(thumbnails_), shown_(new ShownLibraries(model_, this))
{
    setObjectName(QStringLiteral("browserWindow"));
    setWindowTitle(tr("Libraries"));
    resize(1000, 700);
    buildTree();
    buildSearch();
    buildLayout();
    buildJobs();
    buildMenus();
    buildManufacturers();
    connectLoader();
    connectShown();
    state_ = std::make_unique<WindowState>(*this, settingsFile());
    state_->restoreWindow();
    showPage();
}

// A job that ended later would tell members that are gone.
BrowserWindow::~BrowserWindow()
{
    delete jobs_;
}

void BrowserWindow::readLibraries()
{
    loader_.readInstalled();
}

void BrowserWindow::finishSaving()
{
    manufacturers_.finish();
    shown_->filters().finish();
}

void BrowserWindow::openFiles(const QStringList& files)
{
    jobs_->openFiles(files);
}

// One that its user has closed is not opened again.
bool BrowserWindow::mayOpenFiles(std::size_t count) const
{
    return isVisible() && jobs_->mayOpen(count);
}

void BrowserWindow::comeToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void BrowserWindow::buildTree()
{
    tree_ = new QTreeView;
    tree_->setObjectName(QStringLiteral("libraryTree"));
    tree_->setAccessibleName(tr("Libraries"));
    tree_->setModel(&model_);
    tree_->setItemDelegate(new LibraryDelegate(tree_));
    tree_->setHeaderHidden(true);
    tree_->setUniformRowHeights(true);
    tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree_->setDragEnabled(true);
    connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &BrowserWindow::showSelected);
    connect(tree_, &QTreeView::activated, this, &BrowserWindow::choosePlace);
    connect(&thumbnails_, &ThumbnailCache::changed, tree_->viewport(), [this] { tree_->viewport()->update(); });
}

void BrowserWindow::buildSearch()
{
    searchBox_ = new QLineEdit;
    searchBox_->setObjectName(QStringLiteral("searchBox"));
    searchBox_->setClearButtonEnabled(true);
    searchBox_->setPlaceholderText(tr("Search the libraries"));
    searchBox_->setAccessibleName(tr("Search"));
    search_ = new SearchPane(thumbnails_);
    connect(searchBox_, &QLineEdit::textChanged, this, &BrowserWindow::searchTextChanged);
    connect(searchBox_, &QLineEdit::returnPressed, this, [this] {
        if (pages_->currentWidget() == search_)
            search_->view()->setFocus();
    });
    search_->runner().setSource([this] { return searchedLibraries(); });
    connect(&search_->runner(), &SearchRunner::ranOut, this,
            [this] { showMessage(tr("There is too little memory for the search.")); });
    connect(search_, &SearchPane::shown, this, &BrowserWindow::showPage);
    connect(search_, &SearchPane::selected, this, &BrowserWindow::showPlace);
    connect(search_, &SearchPane::activated, this,
            [this](const LibraryPlace& place) { place.isFolder ? reveal(place) : choosePlace(); });
}

QWidget* BrowserWindow::leftSide()
{
    empty_ = new QLabel;
    empty_->setObjectName(QStringLiteral("emptyState"));
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    pages_ = new QStackedWidget;
    pages_->addWidget(empty_);
    pages_->addWidget(tree_);
    pages_->addWidget(search_);
    pages_->addWidget(shown_->page());
    auto* const head = new QHBoxLayout;
    head->addWidget(searchBox_, 1);
    head->addWidget(shown_->filterBox());
    auto* const left = new QWidget;
    auto* const layout = new QVBoxLayout(left);
    layout->setContentsMargins(8, 8, 0, 8);
    layout->addLayout(head);
    layout->addWidget(shown_->strip());
    layout->addWidget(pages_);
    return left;
}

// It scrolls, since the card of a manufacturer would make the window taller than a small screen.
QWidget* BrowserWindow::rightSide()
{
    details_ = new DetailPane(thumbnails_);
    connect(details_, &DetailPane::chosen, this, &BrowserWindow::choosePlace);
    auto* const right = new QScrollArea;
    right->setObjectName(QStringLiteral("detailScroll"));
    right->setFrameShape(QFrame::NoFrame);
    right->setFocusPolicy(Qt::NoFocus);  // it follows the focus of what is in it
    right->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    right->setWidgetResizable(true);
    right->setMinimumWidth(details_->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    right->setWidget(details_);
    return right;
}

void BrowserWindow::buildLayout()
{
    columns_ = new QSplitter(Qt::Horizontal);
    columns_->setObjectName(QStringLiteral("columnSplitter"));
    columns_->addWidget(leftSide());
    columns_->addWidget(rightSide());
    columns_->setStretchFactor(0, 1);
    columns_->setSizes({640, 360});
    columns_->setChildrenCollapsible(false);
    mainSplitter_ = new QSplitter(Qt::Vertical);
    mainSplitter_->setObjectName(QStringLiteral("libMainSplitter"));
    mainSplitter_->addWidget(columns_);
    setCentralWidget(mainSplitter_);
    statusBar()->setObjectName(QStringLiteral("statusBar"));
}

void BrowserWindow::buildJobs()
{
    jobs_ = new LibraryJobs(*this);
    jobs_->setService(qtText(options_.service));
    auto* const drop = new LibraryDrop(*this);
    drop->coverWidget(searchBox_);
    connect(drop, &LibraryDrop::dropped, jobs_, &LibraryJobs::importFiles);
    connect(jobs_, &LibraryJobs::runningChanged, this, &BrowserWindow::showImported);
    connect(jobs_, &LibraryJobs::runningChanged, drop, [drop](bool running) { drop->setEnabled(!running); });
    connect(jobs_, &LibraryJobs::libraryInstalled, this, [this](const fileString& library, bool imported) {
        thumbnails_.forget(library);
        if (imported) {
            imported_ = library;
            isImportedRead_ = false;
        }
        loader_.read({library});
    });
}

void BrowserWindow::buildMenus()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->setToolTipsVisible(true);
    file->addActions(jobs_->actions());
    file->addSeparator();
    file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);
    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    QAction* const find = edit->addAction(tr("&Find"), searchBox_, [this] {
        searchBox_->setFocus();
        searchBox_->selectAll();
    });
    find->setShortcut(QKeySequence::Find);
    QAction* const back = edit->addAction(tr("Back to the &Tree"), searchBox_, [this] {
        searchBox_->clear();
        tree_->setFocus();
    });
    back->setShortcut(QKeySequence(Qt::Key_Escape));
    connect(jobs_, &LibraryJobs::runningChanged, back, [back](bool running) {  // Escape cancels it meanwhile
        back->setShortcut(running ? QKeySequence() : QKeySequence(Qt::Key_Escape));
    });
    showInTree_ = edit->addAction(tr("&Show in the Tree"), this, &BrowserWindow::showInTree);
    showInTree_->setShortcut(QKeySequence(QStringLiteral("Ctrl+T")));
    showInTree_->setObjectName(QStringLiteral("showInTreeAction"));
    showInTree_->setEnabled(false);
    search_->view()->addAction(showInTree_);
    search_->view()->setContextMenuPolicy(Qt::ActionsContextMenu);
    menuBar()->addMenu(tr("&View"))->addMenu(shown_->kindMenu());
    menuBar()->addMenu(shown_->filterMenu());
}

void BrowserWindow::buildManufacturers()
{
    manufacturer_ = new ManufacturerPane(manufacturers_);
    details_->extras()->addWidget(manufacturer_);
    auto* const menu = new ManufacturerMenu(manufacturers_, *manufacturer_, options_.service, this);
    menuBar()->addMenu(menu);
    connect(menu, &ManufacturerMenu::told, this, &BrowserWindow::showMessage);
    manufacturers_.read();
}

void BrowserWindow::connectShown()
{
    connect(shown_, &ShownLibraries::changed, this, &BrowserWindow::shownChanged);
    connect(shown_, &ShownLibraries::told, this, &BrowserWindow::showMessage);
}

void BrowserWindow::connectLoader()
{
    connect(&loader_, &LibraryLoader::arrived, this, &BrowserWindow::takeLibraries);
    connect(&loader_, &LibraryLoader::folderFailed, this, [this](const fileString& path, const QString& reason) {
        showMessage(tr("“%1” %2").arg(qtText(path.humanReadableString()), reason));
    });
    connect(&loader_, &LibraryLoader::finished, this, &BrowserWindow::librariesRead);
}

void BrowserWindow::takeLibraries(const std::vector<LibraryArrival>& arrivals)
{
    std::set<fileString> paths;
    for (const LibraryArrival& arrival : arrivals)
        if (model_.isNews(arrival.library))
            paths.insert(arrival.library.path);
    if (paths.empty())
        return;
    const bool isHitShown = pages_->currentWidget() == search_ && shownPlace_ && paths.contains(shownPlace_->library);
    const std::string hit = isHitShown ? idOf(model_.library(shownPlace_->library), *shownPlace_) : std::string();
    replaceLibraries(arrivals, paths);
    if (isHitShown)
        showPlace(model_.itemNamed(shownPlace_->library, hit));
    librariesChanged();
    for (const auto& [library, failure] : arrivals)
        if (!failure.isEmpty())
            showMessage(tr("“%1” %2").arg(qtText(library.path.stem().utf8()), failure));
    isImportedRead_ = isImportedRead_ || (imported_ && paths.contains(*imported_));
    showImported();
}

// Folders are opened while the view has yet to see its new rows: it looks at them once, however many are opened.
void BrowserWindow::replaceLibraries(const std::vector<LibraryArrival>& arrivals, const std::set<fileString>& paths)
{
    const TreeState state(*tree_, model_, paths);
    loader_.release(model_.take(arrivals));
    const auto isComplete = [this](const fileString& path) {
        const BrowsedLibrary* const library = model_.library(path);
        return library != nullptr && library->order != nullptr;
    };
    for (const fileString& path : paths)
        if (isComplete(path))
            state_->openFolders(path);
    state.restore();
    for (const fileString& path : paths)
        if (isComplete(path))
            state_->selectCurrent(path);
}

// What the job tells when it ends would take the place of what is told here.
void BrowserWindow::showImported()
{
    if (!imported_ || !isImportedRead_ || jobs_->isRunning())
        return;
    const BrowsedLibrary* const library = model_.library(*imported_);
    if (library == nullptr || library->order == nullptr)
        return;
    imported_.reset();
    if (model_.isShown(*library))
        reveal({library->path, true, 0});
    else
        shown_->tellHidden(qtText(library->path.stem().utf8()));
}

SearchedLibraries BrowserWindow::searchedLibraries() const
{
    SearchedLibraries searched;
    for (const auto& [path, library] : model_.libraries())
        if (library.order != nullptr) {
            searched.libraries.push_back({path, library.catalog});
            searched.leftOut.push_back(!model_.isShown(library));
        }
    return searched;
}

void BrowserWindow::librariesChanged()
{
    search_->runner().librariesChanged();
    showPage();
}

// What a search under way would find is no longer asked for.
void BrowserWindow::shownChanged()
{
    search_->runner().librariesChanged();
    searchTextChanged(searchBox_->text());
}

void BrowserWindow::searchTextChanged(const QString& text)
{
    search_->runner().search(text);
    showPage();
}

// The results of the last search stay until the next search has ended.
void BrowserWindow::showPage()
{
    const bool searching = !searchBox_->text().trimmed().isEmpty();
    empty_->setText(
        tr("No libraries are installed.\n\nCheck for updates to fetch those of the content service, or drop "
           "a packed library (.calibz) here."));
    if (searching && search_->model().outcome() != nullptr)
        pages_->setCurrentWidget(search_);
    else if (shown_->hidesAll())
        pages_->setCurrentWidget(shown_->page());
    else
        pages_->setCurrentWidget(model_.rowCount() == 0 ? static_cast<QWidget*>(empty_) : tree_);
    shown_->setSearchInVain(searching && search_->isInVain());
    if (!searching) {
        search_->clear();
        showSelected();
    }
}

void BrowserWindow::reveal(const LibraryPlace& place)
{
    const QModelIndex index = model_.find(place);
    searchBox_->clear();
    if (!index.isValid())
        return;
    tree_->setCurrentIndex(index);
    tree_->scrollTo(index, QAbstractItemView::PositionAtCenter);
    if (place.isFolder)
        tree_->expand(index);
    tree_->setFocus();
}

void BrowserWindow::showInTree()
{
    if (const std::optional<LibraryPlace> place = shownPlace_)
        reveal(*place);
}

// While the results of a search are shown, the selected one of them counts.
void BrowserWindow::showSelected()
{
    if (pages_->currentWidget() != search_)
        showPlace(model_.place(tree_->currentIndex()));
}

void BrowserWindow::showPlace(const std::optional<LibraryPlace>& place)
{
    const BrowsedLibrary* const known = place ? model_.library(place->library) : nullptr;
    const BrowsedLibrary* const library = place && holds(known, *place) ? known : nullptr;  // a hit may be outdated
    shownPlace_ = place;
    details_->show(library, place.value_or(LibraryPlace()));
    manufacturer_->show(library == nullptr || place->isFolder ? nullptr : library->catalog, place ? place->index : 0);
    showInTree_->setEnabled(library != nullptr);
}

void BrowserWindow::choosePlace()
{
    const BrowsedLibrary* const library = shownPlace_ ? model_.library(shownPlace_->library) : nullptr;
    if (library == nullptr || shownPlace_->isFolder || shownPlace_->index >= library->catalog->items.size())
        return;
    const std::string& name = library->catalog->items[shownPlace_->index].name;
    Library::Chooser::get().setData(Library::TreeItemData(static_cast<long long>(shownPlace_->index), library->path,
                                                          StringConvert::toUnicodeFromUtf8(name)));
    showMessage(tr("Chosen: %1").arg(qtText(name)));
}

void BrowserWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    connect(windowHandle(), &QWindow::screenChanged, this, &BrowserWindow::fitPictures, Qt::UniqueConnection);
    fitPictures();
}

// The screens of a desktop may differ in how many pixels they have for the same size.
void BrowserWindow::fitPictures()
{
    const qreal ratio = devicePixelRatioF();
    const int side = static_cast<int>(LibraryDelegate::pictureSide * ratio);
    model_.setPictureSide(side);
    search_->model().setPictureSide(side);
    details_->setPixelRatio(ratio);
    manufacturer_->setPixelRatio(ratio);
    tree_->viewport()->update();
    search_->view()->viewport()->update();
}

void BrowserWindow::closeEvent(QCloseEvent* event)
{
    unsaved_ = failureOf([this] { state_->save(); });
    QMainWindow::closeEvent(event);
}

void BrowserWindow::showMessage(const QString& text)
{
    statusBar()->showMessage(text, messageMilliseconds);
}

}  // namespace VelkHost
