#include "host/installation/Filters.h"

#include "host/fixtures/Fixtures.h"
#include "host/support/FileError.h"
#include "support/Threads.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Reporting/MessagingSystem.h>
#include <VelkLibrary/Filter/FilterFile.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InstalledFilters : public test::TestHost
{
protected:
    static fileString path()
    {
        return PathUtils::getObject().getCoreLibraryDatabasePath() + fileString(std::string("catalog_filters.json"));
    }

    static FilterFile saved()
    {
        FilterFile file;
        EXPECT_TRUE(file.read(path()));
        return file;
    }

    static std::vector<std::string> namesOf(const std::vector<LibraryFilter>& filters)
    {
        std::vector<std::string> names;
        for (const LibraryFilter& filter : filters)
            names.push_back(filter.getFilterName());
        return names;
    }
};

TEST_F(InstalledFilters, KeepTheirOrderFromChangeToChange)
{
    for (const char* name : {"A", "B", "C"})
        VelkHost::addToFilter(name, {"x"});
    VelkHost::setCurrentFilter(2);
    EXPECT_THAT(namesOf(saved().filters), ElementsAre("A", "B", "C"));
    EXPECT_THAT(namesOf(VelkHost::installedFilters().getLibraryFilters()), ElementsAre("A", "B", "C"));
}

TEST_F(InstalledFilters, AreThoseOfTheFileWhoeverWroteIt)
{
    VelkHost::addToFilter("A", {"x"});
    ASSERT_TRUE((FilterFile{5, {{"Elsewhere", 5, {"y"}}}}.write(path())));
    EXPECT_THAT(namesOf(VelkHost::installedFilters().getLibraryFilters()), ElementsAre("Elsewhere"));
    EXPECT_EQ(VelkHost::installedFilters().getCurrentFilterId(), 5);
}

TEST_F(InstalledFilters, AreAsTheyWereWhenAChangeCannotBeSaved)
{
    VelkHost::addToFilter("A", {"x"});
    LibraryFilterManager& manager = VelkHost::installedFilters();
    std::filesystem::remove(path().utf8());
    std::filesystem::create_directory(path().utf8());
    EXPECT_THROW(VelkHost::addToFilter("B", {"x"}), VelkHost::FileError);
    EXPECT_THAT(namesOf(manager.getLibraryFilters()), ElementsAre("A"));
}

// A save that succeeds does not fail because another worker sends messages meanwhile.
TEST_F(InstalledFilters, KeepWhatOthersChangedMeanwhile)
{
    VelkHost::addToFilter("a", {"1"});
    VelkHost::addToFilter("b", {"1"});
    const VelkHost::FilterSet before{saved().filters, VelkHost::noFilterId};
    // Somebody else renames nothing, adds one filter and takes the id that the window is about to use.
    VelkHost::addToFilter("theirs", {"2"});
    const long theirId = VelkHost::filterNamed("theirs").getFilterId();

    VelkHost::FilterSet after = before;
    for (LibraryFilter& filter : after.filters)
        if (filter.getFilterName() == "a")
            filter.setDatabaseIds({"1", "3"});
    std::erase_if(after.filters, [](const LibraryFilter& filter) { return filter.getFilterName() == "b"; });
    after.filters.emplace_back("ours", theirId, std::vector<std::string>{"4"});
    after.currentId = theirId;
    VelkHost::applyFilterChanges(before, after);

    EXPECT_THAT(namesOf(saved().filters), testing::UnorderedElementsAre("a", "ours", "theirs"));
    EXPECT_THAT(VelkHost::filterNamed("a").getDatabaseIds(), ElementsAre("1", "3"));
    EXPECT_EQ(VelkHost::filterNamed("theirs").getFilterId(), theirId);
    EXPECT_EQ(saved().currentId, VelkHost::filterNamed("ours").getFilterId());
}

TEST_F(InstalledFilters, AreSavedWhileTheUserGetsMessages)
{
    constexpr int changes = 100;
    {
        const test::Repeatedly messenger([] {
            error::MessagingSystem::control().notify("another worker", 1, error::WarningTrait(), 1, "text", "", "");
        });
        test::Thread saver([] {
            for (int i = 0; i < changes; ++i)
                EXPECT_NO_THROW(VelkHost::addToFilter("F" + std::to_string(i), {"x"}));
        });
    }
    EXPECT_THAT(saved().filters, SizeIs(changes));
    EXPECT_THAT(VelkHost::installedFilters().getLibraryFilters(), SizeIs(changes)) << "nothing was rolled back";
    EXPECT_THAT(messages(), testing::Not(IsEmpty()));
}

}  // namespace
