#include "host/browser/filters/FilterStore.h"

#include "host/browser/language/Reasons.h"
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

// What is to arrive is made before the work, so that work that was done is not told as failed for want of memory.
void FilterStore::run(const std::function<void()>& work, const std::function<void()>& succeeded)
{
    struct Result
    {
        QString failure;
        QString unread;
        FilterState state;
    };
    auto job = [this, work, succeeded]() -> Worker::Arrival {
        const auto result = std::make_shared<Result>();
        Worker::Arrival arrival = [this, result, succeeded] {
            if (!result->failure.isEmpty())
                return Q_EMIT failed(result->failure);
            isKnown_ = result->unread.isEmpty();
            if (isKnown_)
                state_ = result->state;
            succeeded();
            isKnown_ ? Q_EMIT changed() : Q_EMIT unreadable(result->unread);
        };
        result->failure = failureOf(work);
        if (result->failure.isEmpty())
            result->unread = failureOf([&] { result->state = readFilterState(); });
        return arrival;
    };
    worker_.run(std::move(job), [this] { Q_EMIT failed(tooLittleMemory()); });
}

}  // namespace VelkHost
