#pragma once

#include "host/browser/BrowserOptions.h"
#include "host/browser/manufacturers/ManufacturerStore.h"
#include "host/browser/tree/LibraryLoader.h"
#include "host/browser/tree/LibraryTreeModel.h"
#include "host/browser/tree/ThumbnailCache.h"
#include "host/installation/LibrarySearch.h"

#include <QMainWindow>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QModelIndex;
class QSplitter;
class QStackedWidget;
class QTreeView;

namespace VelkHost {

class DetailPane;
class ManufacturerPane;
class LibraryJobs;
class SearchPane;
struct SearchedLibraries;
class ShownLibraries;
class WindowState;

/// The library browser: the libraries as a tree or, while something is typed, the hits of the search; and beside
/// them the details of the selected item.
class BrowserWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit BrowserWindow(BrowserOptions options = {}, QWidget* parent = nullptr);
    ~BrowserWindow() override;

    /// Waits until what the user has entered is saved, for a window that was closed.
    void finishSaving();
    /// Why the window's own state could not be kept when it was closed, a text for people; empty when it was.
    const QString& unsaved() const { return unsaved_; }

    /// Reads the installed libraries.
    void readLibraries();

    LibraryTreeModel& model() { return model_; }
    QTreeView* tree() const { return tree_; }
    SearchPane* searchPane() const { return search_; }
    QSplitter* columns() const { return columns_; }
    ShownLibraries* shownLibraries() const { return shown_; }
    ManufacturerStore& manufacturers() { return manufacturers_; }
    LibraryJobs& jobs() const { return *jobs_; }
    bool isReading() const { return loader_.isReading(); }

    /// Imports files as LibraryJobs::openFiles() does; and whether it can take so many.
    void openFiles(const QStringList& files);
    bool mayOpenFiles(std::size_t count) const;
    /// Comes back from the icons and in front of other windows, as far as the desktop lets it.
    void comeToFront();

    /// Shows a place in the tree, opened and selected.
    void reveal(const LibraryPlace& place);

Q_SIGNALS:
    /// All libraries that readLibraries() asked for are in the tree.
    void librariesRead();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildTree();
    void buildSearch();
    void buildLayout();
    void buildJobs();
    void buildMenus();
    void buildManufacturers();
    void connectLoader();
    void connectShown();
    QWidget* leftSide();
    QWidget* rightSide();
    void takeLibraries(const std::vector<LibraryArrival>& arrivals);
    void replaceLibraries(const std::vector<LibraryArrival>& arrivals, const std::set<fileString>& paths);
    void showImported();
    SearchedLibraries searchedLibraries() const;
    void shownChanged();
    void searchTextChanged(const QString& text);
    void librariesChanged();
    void showInTree();
    void showSelected();
    void showPlace(const std::optional<LibraryPlace>& place);
    void choosePlace();
    void showMessage(const QString& text);
    void showPage();
    void fitPictures();

    const BrowserOptions options_;
    ThumbnailCache thumbnails_;
    LibraryLoader loader_;
    LibraryTreeModel model_;
    ManufacturerStore manufacturers_;
    std::optional<LibraryPlace> shownPlace_;
    QLineEdit* searchBox_ = nullptr;
    QTreeView* tree_ = nullptr;
    SearchPane* search_ = nullptr;
    QLabel* empty_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    DetailPane* details_ = nullptr;
    ManufacturerPane* manufacturer_ = nullptr;
    ShownLibraries* shown_ = nullptr;
    QSplitter* columns_ = nullptr;
    QSplitter* mainSplitter_ = nullptr;
    QAction* showInTree_ = nullptr;
    std::unique_ptr<WindowState> state_;
    QString unsaved_;
    LibraryJobs* jobs_ = nullptr;
    std::optional<fileString> imported_;  // to be shown when it is read and the job has told what it did
    bool isImportedRead_ = false;
};

}  // namespace VelkHost
