#pragma once

#include <VelkLibrary/Export.h>

#include <string>
#include <string_view>
#include <vector>

/// A named set of libraries; while it is current, the browser shows only those.
///
/// A plain value: copies share nothing. Not synchronised. A library is listed by its database id, which is
/// opaque UTF-8 and compared byte for byte; the list keeps the caller's order and may hold one id several
/// times.
class VELKLIBRARY_EXPORT LibraryFilter
{
public:
    /// `id` -1 means that no filter is in force. Whether an id is unique is the manager's business.
    LibraryFilter(std::string name, long id, std::vector<std::string> databaseIds);

    /// UTF-8; the reference is valid until the filter changes.
    const std::string& getFilterName() const noexcept { return filterName_; }
    /// Takes any text. A filter without a name is dropped when the filter file is read.
    void setFilterName(std::string name);

    /// The filter's id, any number; -1 when this stands for no filter.
    /// @{
    long getFilterId() const noexcept { return filterId_; }
    void setFilterId(long id) noexcept { filterId_ = id; }
    /// @}

    /// The reference is valid until the filter changes.
    const std::vector<std::string>& getDatabaseIds() const noexcept { return databaseIds_; }
    /// Replaces the whole list.
    void setDatabaseIds(std::vector<std::string> ids);

    /// Removes the first entry equal to `id`; later ones stay. No match: nothing happens.
    /// Example: {a, b, c, b} without "b" is {a, c, b}.
    void removeDatabaseId(std::string_view id);

private:
    std::string filterName_;
    long filterId_;
    std::vector<std::string> databaseIds_;
};
