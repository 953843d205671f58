#pragma once

#include "host/browser/filters/FilterStore.h"
#include "host/browser/tree/LibraryTreeModel.h"

#include <QObject>

namespace VelkHost {

class FilterBox;
class FilterMenu;
class HiddenNote;
class KindMenu;

/// Which libraries the window shows: those of the filter in force, and of these the kinds that are not hidden.
/// Keeps the tree's model in step, and has the widgets and menus that decide it.
class ShownLibraries : public QObject
{
    Q_OBJECT

public:
    /// `window` is the parent of the menus and dialogs.
    ShownLibraries(LibraryTreeModel& model, QWidget* window);

    FilterStore& filters() { return filters_; }

    // Put in place by the window, which owns them then.
    FilterBox* filterBox() const { return box_; }
    FilterMenu* filterMenu() const { return menu_; }
    KindMenu* kindMenu() const { return kinds_; }
    /// Shown in place of the tree when hidesAll().
    HiddenNote* page() const { return page_; }
    /// Above the results of a search, shown when it should be.
    HiddenNote* strip() const { return strip_; }

    /// Whether there are libraries, but none is shown.
    bool hidesAll() const;
    /// Sets whether a search has found nothing.
    void setSearchInVain(bool inVain);

    /// Tells the user why a library that was just imported does not show.
    void tellHidden(const QString& library);

    /// Puts no filter in force, and shows every kind.
    void showAll();
    /// Opens the editor; before that reads the filters, where they are not known.
    void editFilters();
    void askForFilterFile();

Q_SIGNALS:
    /// The set of shown libraries has changed.
    void changed();
    /// Something to tell the user.
    void told(const QString& message);

private:
    void connectFilters();
    void showFilters();
    void openEditor();
    void apply();
    void tellMerge(const FilterMerge& merge);
    bool hidesSome() const;
    void explain();
    QString whatHides() const;

    LibraryTreeModel& model_;
    QWidget* const window_;
    FilterStore filters_;
    FilterBox* const box_;
    FilterMenu* const menu_;
    KindMenu* const kinds_;
    HiddenNote* const page_;
    HiddenNote* const strip_;
    bool searchInVain_ = false;
    bool wantsEditor_ = false;  // when the filters are known
};

}  // namespace VelkHost
