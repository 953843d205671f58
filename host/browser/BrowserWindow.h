#pragma once

#include "host/browser/LibraryLoader.h"
#include "host/browser/LibraryTreeModel.h"
#include "host/browser/ThumbnailCache.h"

#include <VelkCommon/Files/fileString.h>

#include <QMainWindow>
#include <QString>

#include <string>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QSplitter;
class QStackedWidget;
class QTreeView;

namespace VelkHost {

class DetailPane;

/// The library browser: the libraries as a tree, what is selected beside it.
class BrowserWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit BrowserWindow(QWidget* parent = nullptr);
    ~BrowserWindow() override;

    /// Reads the installed libraries.
    void readLibraries();

    LibraryTreeModel& model() { return model_; }
    QTreeView* tree() const { return tree_; }

Q_SIGNALS:
    /// All libraries that were asked for are in the tree.
    void librariesRead();

private:
    void buildTree();
    void buildLayout();
    void buildMenus();
    void showSelected();
    void chooseSelected();
    void showMessage(const QString& text);
    void showEmptyOrTree();

    ThumbnailCache thumbnails_;
    LibraryLoader loader_;
    LibraryTreeModel model_;
    QLineEdit* searchBox_ = nullptr;
    QTreeView* tree_ = nullptr;
    QLabel* empty_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    DetailPane* details_ = nullptr;
    QSplitter* mainSplitter_ = nullptr;
};

}  // namespace VelkHost
