#pragma once

/// @file
/// Filters as texts, and texts of filter files.

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Reporting/Assertions.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include "support/Numbers.h"
#include "support/TestHost.h"

#include <string>
#include <vector>

namespace test {

/// "1 Kitchens [a, b]".
inline std::string describe(const LibraryFilter& filter)
{
    std::string ids;
    for (const std::string& id : filter.getDatabaseIds())
        ids += (ids.empty() ? "" : ", ") + id;
    return std::to_string(filter.getFilterId()) + " " + filter.getFilterName() + " [" + ids + "]";
}

inline std::vector<std::string> describe(const std::vector<LibraryFilter>& filters)
{
    std::vector<std::string> texts;
    for (const LibraryFilter& filter : filters)
        texts.push_back(describe(filter));
    return texts;
}

/// The text that stands for a filter in a filter file.
inline std::string filterText(const std::string& name, long id, const std::string& databaseIds)
{
    return "\"Filter\": {\"Filter_Name\": \"" + name + "\", \"Filter_Id\": " + std::to_string(id) +
           ", \"Database_Ids\": [" + databaseIds + "]}";
}

/// The manager is one for the whole process. Each test begins with an empty one; what happens at its first use
/// is tested in separate processes.
class FilterTest : public TestHost
{
protected:
    FilterTest()
    {
        Velk::HostServices host = services();
        host.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
            if (id == test::textNumber::noFilter)
                return U"No filter here";
            return std::nullopt;
        };
        Velk::installHost(std::move(host));
        manager().setLibraryFilters({});
        manager().setCurrentFilterId(-1);
        manager().clearForcedSystemDBFilter();
    }

    static LibraryFilterManager& manager() { return LibraryFilterManager::getLibraryFilterManager(); }

    static fileString filterFile()
    {
        return PathUtils::getObject().getCoreLibraryDatabasePath() + fileString(std::string("catalog_filters.json"));
    }

    static std::vector<std::string> filters() { return describe(manager().getLibraryFilters()); }

    /// Takes over what the file at `path` holds, by merging nothing into it.
    static void load(const fileString& path)
    {
        manager().setLibraryFilters({});
        EXPECT_TRUE(manager().mergeFilters(path));
    }

    /// Expects that one assertion with this line and text was reported, and nothing else.
    void expectReport(std::size_t line, const std::string& text) const
    {
        ASSERT_EQ(assertions().size(), 1U);
        const Assertion report = assertions().front();
        EXPECT_EQ(report.sourceFile, "LibraryFilterManager");
        EXPECT_EQ(report.line, line);
        EXPECT_EQ(report.kind, Velk::softAssertion);
        EXPECT_EQ(report.expression, text);
        EXPECT_TRUE(messages().empty());
    }
};

}  // namespace test
