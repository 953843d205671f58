#include "host/browser/filters/FilterStore.h"

#include "host/support/QtText.h"

#include <VelkLibrary/LibraryFilterManager.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace VelkHost {
namespace {

/// On the worker, which alone works with the manager.
FilterState readFilterState()
{
    const LibraryFilterManager& manager = installedFilters();
    FilterState state{manager.getLibraryFilters(), manager.getCurrentFilterId(), {}};
    for (const std::string& entry : manager.getFilterStrings())
        state.entries.append(qtText(entry));
    return state;
}

}  // namespace

const LibraryFilter* FilterState::inForce() const
{
    const auto found = std::find_if(filters.begin(), filters.end(),
                                    [&](const LibraryFilter& filter) { return filter.getFilterId() == currentId; });
    return currentId == noFilterId || found == filters.end() ? nullptr : &*found;
}

int FilterState::currentEntry() const
{
    const LibraryFilter* const current = inForce();
    return current == nullptr ? 0 : static_cast<int>(current - filters.data()) + 1;
}

long FilterState::idOfEntry(int entry) const
{
    const bool isFilter = entry > 0 && static_cast<std::size_t>(entry) <= filters.size();
    return isFilter ? filters[static_cast<std::size_t>(entry - 1)].getFilterId() : noFilterId;
}

FilterStore::FilterStore(QObject* parent) : QObject(parent) {}

void FilterStore::read()
{
    run([] {}, [] {});
}

void FilterStore::setCurrentEntry(int entry)
{
    run([id = state_.idOfEntry(entry)] { setCurrentFilter(id); }, [] {});
}

void FilterStore::replace(const std::vector<LibraryFilter>& filters, long currentId)
{
    const FilterSet before{state_.filters, state_.currentId};
    run([before, after = FilterSet{filters, currentId}] { applyFilterChanges(before, after); }, [] {});
}

void FilterStore::merge(const fileString& path)
{
    const auto came = std::make_shared<FilterMerge>();
    run([path, came] { *came = mergeFilterFile(path); }, [this, came] { Q_EMIT merged(*came); });
}

void FilterStore::run(const std::function<void()>& work, const std::function<void()>& succeeded)
{
    worker_.run([this, work, succeeded]() -> Worker::Arrival {
        if (const QString failure = failureOf(work); !failure.isEmpty())
            return [this, failure] { Q_EMIT failed(failure); };
        FilterState state;
        const QString unread = failureOf([&] { state = readFilterState(); });
        return [this, state, succeeded, unread] {
            if (unread.isEmpty())
                state_ = state;
            succeeded();
            unread.isEmpty() ? Q_EMIT changed() : Q_EMIT unreadable(unread);
        };
    });
}

}  // namespace VelkHost
