#pragma once

#include "host/browser/filters/FilterStore.h"
#include "host/browser/tree/LibraryLoader.h"

#include <QDialog>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include <map>
#include <vector>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListView;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace VelkHost {

/// A dialog to make, name, remove and fill filters. Works on a copy; when it is accepted, the names are unique
/// and none is empty.
class FilterEditor : public QDialog
{
    Q_OBJECT

public:
    /// `libraries` are the installed ones. Further libraries that a filter names are offered, too.
    FilterEditor(const FilterState& state, const std::map<fileString, BrowsedLibrary>& libraries,
                 QWidget* parent = nullptr);
    ~FilterEditor() override;

    const std::vector<LibraryFilter>& filters() const { return filters_; }
    long currentId() const { return currentId_; }

private:
    void buildFilters();
    void buildLibraries(const std::map<fileString, BrowsedLibrary>& libraries);
    void buildLayout();
    QWidget* filterSide();
    QWidget* librarySide();
    void connectAll();

    LibraryFilter* selected();
    void add();
    void rename();
    void remove();
    void nameEdited(QListWidgetItem* item);
    void libraryToggled(const QStandardItem* item);
    void makeCurrent(bool current);
    void showSelected();
    void showNames();
    void showProblem();
    void addLibrary(const std::string& id, const QString& title);
    QString problem() const;

    std::vector<LibraryFilter> filters_;
    long currentId_;
    QStandardItemModel libraries_;
    QSortFilterProxyModel found_;
    QListWidget* const list_;
    QPushButton* const add_;
    QPushButton* const rename_;
    QPushButton* const remove_;
    QCheckBox* const current_;
    QLabel* const libraryTitle_;
    QLineEdit* const search_;
    QListView* const libraryView_;
    QLabel* const problem_;
    QDialogButtonBox* const buttons_;
};

}  // namespace VelkHost
