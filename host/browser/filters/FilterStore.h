#pragma once

#include "host/browser/Worker.h"
#include "host/installation/Filters.h"

#include <VelkLibrary/LibraryFilter.h>

#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

namespace VelkHost {

/// The installation's filters as the window knows them.
struct FilterState
{
    std::vector<LibraryFilter> filters;
    long currentId = noFilterId;
    QStringList entries;  ///< of a menu: the first means no filter, the others are the names of `filters`

    /// The filter in force; null when there is none, and when no filter has the current id.
    const LibraryFilter* inForce() const;
    /// The entry of the filter in force.
    int currentEntry() const;
    /// The id of an entry's filter.
    long idOfEntry(int entry) const;
};

/// The installation's filters, read and saved in the background. Used on the user-interface thread only.
class FilterStore : public QObject
{
    Q_OBJECT

public:
    explicit FilterStore(QObject* parent = nullptr);

    const FilterState& state() const { return state_; }
    /// Whether the state was read, and is not one before filters that cannot be read.
    bool isKnown() const { return isKnown_; }

    // All of these end in changed(), failed() or unreadable().
    void read();
    /// Puts the filter of an entry in force.
    void setCurrentEntry(int entry);
    /// Makes these the filters, and that one current. What other programs have changed meanwhile stays.
    void replace(const std::vector<LibraryFilter>& filters, long currentId);
    /// Adds the filters of a file; merged() comes before changed().
    void merge(const fileString& path);

    bool isBusy() const { return worker_.isBusy(); }
    /// Waits until changes are saved.
    void finish() { worker_.finish(); }

Q_SIGNALS:
    /// The state has changed, or was confirmed.
    void changed();
    /// Nothing was changed; `reason` is for people.
    void failed(const QString& reason);
    /// The work is done, but its result could not be read, so the state is the one before.
    void unreadable(const QString& reason);
    void merged(const VelkHost::FilterMerge& merge);

private:
    void run(const std::function<void()>& work, const std::function<void()>& succeeded);

    FilterState state_;
    bool isKnown_ = false;
    Worker worker_;
};

}  // namespace VelkHost
