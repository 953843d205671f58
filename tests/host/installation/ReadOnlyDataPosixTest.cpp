#include "host/fixtures/Fixtures.h"

#include "host/installation/Filters.h"
#include "host/installation/Manufacturers.h"
#include "host/support/InstallHost.h"
#include "support/Processes.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/Filter/FilterFile.h>

#include <list>

#include <sys/stat.h>

using testing::HasSubstr;

namespace {

/// An installation whose data files its user may only read.
class ReadOnlyData : public test::TestHost
{
protected:
    ReadOnlyData()
    {
        for (const char32_t* name : {U"core", U"manufacturer-data"})
            FileUtils::createDirectoriesWithPerm(home() / name);
        EXPECT_EQ(::chmod(folder().utf8().c_str(), 0777), 0);
    }

    fileString home() const { return folder() / U"home"; }

    /// Runs `change`, which must be refused, in that installation.
    void expectRefusal(const fileString& file, const std::string& text, const std::function<void()>& change,
                       const char* reason) const
    {
        test::writeFile(file, text);
        ASSERT_EQ(::chmod(file.utf8().c_str(), 0444), 0);
        test::asOrdinaryUser([&] {
            VelkHost::installHost(home());
            EXPECT_THAT(test::reasonOf(change), HasSubstr(reason));
        });
        EXPECT_EQ(test::readFile(file), text);
    }
};

TEST_F(ReadOnlyData, KeepsItsFilters)
{
    expectRefusal(
        home() / U"core" / U"catalog_filters.json",
        R"({"Current_Filter": 1, "Filter": {"Filter_Name": "A", "Filter_Id": 1, "Database_Ids": ["x"]}})",
        [] { VelkHost::addToFilter("B", {"y"}); }, "the filters could not be saved");
}

TEST_F(ReadOnlyData, KeepsItsManufacturers)
{
    expectRefusal(
        home() / U"manufacturer-data" / U"manufacturer_data.json",
        R"({"Version": "42", "Last_Modified": "20260301T140559",
            "Manufacturer_1": {"Id": 1, "Last_Modified": "20260301T140559", "Name": "A"}})",
        [] {
            VelkHost::editCard(1, {{{"name", "B"}}, {}, false});
        },
        "cannot be written");
}

// The file is everybody's, its folder is not.
TEST_F(ReadOnlyData, LosesNoFilterThatManyAddInAFolderThatMayNotBeChanged)
{
    const fileString file = home() / U"core" / U"catalog_filters.json";
    test::writeFile(file, R"({"Current_Filter": -1})");
    ASSERT_EQ(::chmod(file.utf8().c_str(), 0666), 0);
    FileUtils::createDirectoriesWithPerm(home() / U"user");
    ASSERT_EQ(::chmod((home() / U"core").utf8().c_str(), 0555), 0);
    constexpr int many = 16;
    std::list<test::Child> children;
    for (int i = 0; i < many; ++i)
        children.emplace_back([&] {
            test::becomeOrdinaryUser();
            VelkHost::installHost(home());
            VelkHost::addToFilter("filter " + std::to_string(i), {"x"});
        });
    for (test::Child& child : children)
        child.wait();
    FilterFile saved;
    EXPECT_TRUE(saved.read(file));
    EXPECT_EQ(saved.filters.size(), std::size_t{many});
    EXPECT_THAT(test::listFolder(home() / U"user"), testing::IsEmpty());
    ASSERT_EQ(::chmod((home() / U"core").utf8().c_str(), 0777), 0);
}

}  // namespace
