#include "host/installation/IndexSearch.h"
#include "host/installation/LibrarySearch.h"

#include "host/fixtures/Fixtures.h"

#include "host/catalog/CatalogFile.h"

#include <VelkCommon/Files/FileUtils.h>

using namespace VelkHost;

namespace {

class LibrarySearch : public test::TestHost
{
protected:
    /// Libraries made of (library name, item names); each item is in the folder "Room".
    static LibrarySet libraries(const std::vector<std::pair<std::string, std::vector<std::string>>>& contents)
    {
        LibrarySet set;
        for (const auto& [name, items] : contents) {
            Catalog catalog;
            catalog.id = name;
            catalog.name = name;
            catalog.folders = {{Folder::noParent, "Room"}};
            for (const std::string& item : items)
                catalog.items.push_back({name + "#" + item, 0, item, "", "", {}});
            set.loaded.push_back({fileString(name), std::make_shared<const Catalog>(std::move(catalog))});
        }
        return set;
    }

    template <typename Change>
    static void change(LibrarySet& set, std::size_t library, Change change)
    {
        Catalog changed = *set.loaded[library].catalog;
        change(changed);
        set.loaded[library].catalog = std::make_shared<const Catalog>(std::move(changed));
    }

    static std::string found(const LibrarySet& set, const SearchRequest& request)
    {
        std::string text;
        const SearchResult result = runSearch(set, request, searchInfo(request));
        for (std::size_t i = 0; i < result.size(); ++i) {
            const Hit hit = result.hit(i);
            const Catalog& catalog = *set.loaded[hit.library].catalog;
            text += std::to_string(hit.priority) + ":" + catalog.name + "/" + hitName(catalog, hit) + " ";
        }
        return text;
    }

    static SearchRequest expression(const std::string& text)
    {
        SearchRequest request;
        request.text = text;
        return request;
    }
};

TEST_F(LibrarySearch, RanksByPriorityThenNameThenLibrary)
{
    const LibrarySet set =
        libraries({{"B", {"Armchair", "chair", "Chairs"}}, {"A", {"Chair", "bar chair", "Art chair"}}});
    EXPECT_EQ(found(set, expression("chair")),
              "1:A/Chair 1:B/chair 5:A/Art chair 5:A/bar chair 7:B/Chairs 12:B/Armchair ");
}

TEST_F(LibrarySearch, KeepsTheOrderOfEqualEntries)
{
    LibrarySet set = libraries({{"A", {"Chair", "chair", "CHAIR"}}});
    EXPECT_EQ(found(set, expression("chair")), "1:A/Chair 1:A/chair 1:A/CHAIR ");
}

TEST_F(LibrarySearch, RatesFoldersAndItems)
{
    const LibrarySet set = libraries({{"A", {"Room divider"}}});
    SearchRequest request = expression("room");
    EXPECT_EQ(found(set, request), "2:A/Room 3:A/Room divider ");
    request.folders = false;
    EXPECT_EQ(found(set, request), "3:A/Room divider ");
    EXPECT_EQ(runSearch(set, request, searchInfo(request)).ratedFolders, 0U);
    request.folders = true;
    request.items = false;
    EXPECT_EQ(found(set, request), "2:A/Room ");
    EXPECT_EQ(runSearch(set, request, searchInfo(request)).ratedItems, 0U);
}

TEST_F(LibrarySearch, EndsWhenAskedToStop)
{
    const LibrarySet set = libraries({{"A", {"Chair"}}});
    std::stop_source stop;
    stop.request_stop();
    const SearchRequest request = expression("chair");
    EXPECT_EQ(runSearch(set, request, searchInfo(request), stop.get_token()).size(), 0U);
}

TEST_F(LibrarySearch, UsesKeywords)
{
    LibrarySet set = libraries({{"A", {"Stool", "Chair"}}});
    change(set, 0, [](Catalog& catalog) { catalog.items[0].keywords = "seat, chair"; });
    EXPECT_EQ(found(set, expression("chair")), "1:A/Chair 9:A/Stool ");
    EXPECT_EQ(found(set, expression("chair -seat")), "1:A/Chair ");
}

TEST_F(LibrarySearch, TakesLegacyTextAsWords)
{
    const LibrarySet set = libraries({{"A", {"Office chair", "Chairs", "OR chair office"}}});
    SearchRequest request = expression(" office \t chair ");
    request.legacy = true;
    EXPECT_EQ(found(set, request), "1:A/Office chair 5:A/OR chair office ");
    request.text = "OR chair";
    EXPECT_EQ(found(set, request), "3:A/OR chair office ");
}

TEST_F(LibrarySearch, FindsNothingForEmptyText)
{
    const LibrarySet set = libraries({{"A", {"Chair"}}});
    for (const char* text : {"", "  ", "-chair", "((", "\xFF"}) {
        EXPECT_EQ(found(set, expression(text)), "") << text;
        EXPECT_EQ(runSearch(set, expression(text), searchInfo(expression(text))).ratedItems, 1U);
    }
}

TEST_F(LibrarySearch, FindsById)
{
    const LibrarySet set = libraries({{"A", {"Chair", "Desk"}}, {"B", {"Desk"}}});
    SearchRequest request;
    request.uniqueId = "B#Desk";
    EXPECT_EQ(found(set, request), "0:B/Desk ");
    request.uniqueId = "b#desk";
    EXPECT_EQ(found(set, request), "");
}

TEST_F(LibrarySearch, SearchesTheTypesAskedFor)
{
    LibrarySet set = libraries({{"A", {"Chair"}}, {"B", {"Chair"}}, {"C", {"Chair"}}});
    change(set, 0, [](Catalog& catalog) { catalog.kind = LibraryKind::Core; });
    change(set, 1, [](Catalog& catalog) { catalog.kind = LibraryKind::Bonus; });
    SearchRequest request = expression("chair");
    request.types = {toLibType(LibraryKind::Bonus), toLibType(LibraryKind::User)};
    EXPECT_EQ(found(set, request), "1:B/Chair 1:C/Chair ");
    EXPECT_EQ(runSearch(set, request, searchInfo(request)).searchedLibraries, 2U);
}

TEST_F(LibrarySearch, KnowsWhereHitsAre)
{
    const Catalog catalog = test::smallCatalog();
    EXPECT_EQ(hitPath(catalog, {Invalid, false, 0, 0}), (std::vector<std::string>{"Furniture", "Seating", "Chairs"}));
    EXPECT_EQ(hitPath(catalog, {Invalid, true, 0, 2}), (std::vector<std::string>{"Furniture", "Seating"}));
    EXPECT_EQ(hitPath(catalog, {Invalid, true, 0, 0}), std::vector<std::string>{});
}

TEST_F(LibrarySearch, LoadsFilesAndFolders)
{
    writeCatalog(test::smallCatalog(), folder() / U"b.calib");
    writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    test::writeFile(folder() / U"c.calib", "broken");
    test::writeFile(folder() / U"d.CALIB", "another extension");
    const LibrarySet set =
        loadLibraries({folder(), folder() / U"none.calib", folder() / U"a.calib", folder() / U"core"});
    ASSERT_EQ(set.loaded.size(), 2U);
    EXPECT_EQ(set.loaded[0].path, folder() / U"a.calib");
    EXPECT_EQ(set.loaded[1].path, folder() / U"b.calib");
    ASSERT_EQ(set.broken.size(), 3U);
    EXPECT_EQ(set.broken[0].path, folder() / U"c.calib");
    EXPECT_EQ(set.broken[0].reason, "is not a library catalog");
    EXPECT_EQ(set.broken[1].reason, "does not exist");
    EXPECT_EQ(set.broken[2].reason, "holds no .calib file; make one with \"velk catalog build\"");
}

TEST_F(LibrarySearch, LoadsInstalledLibraries)
{
    EXPECT_TRUE(loadInstalledLibraries().loaded.empty());
    EXPECT_TRUE(loadInstalledLibraries().broken.empty());
    for (const char32_t* name : {U"user", U"core", U"bonus", U"manufacturer"})
        writeCatalog(test::smallCatalog(), folder() / name / U"a.calib");
    EXPECT_EQ(loadInstalledLibraries().loaded.size(), 4U);
}

TEST_F(LibrarySearch, NamesAFolderOfInstalledLibrariesThatCannotBeRead)
{
    for (const char32_t* name : {U"user", U"core"})
        writeCatalog(test::smallCatalog(), folder() / name / U"a.calib");
    FileUtils::removeDirectoryAndFiles(folder() / U"bonus", FileUtils::noFlags);
    test::writeFile(folder() / U"bonus", "a file in the folder's place");
    FileUtils::removeDirectoryAndFiles(folder() / U"manufacturer", FileUtils::noFlags);
    const VelkHost::InstalledLibraryFiles installed = VelkHost::installedLibraryFiles();
    EXPECT_THAT(installed.files,
                testing::ElementsAre(folder() / U"core" / U"a.calib", folder() / U"user" / U"a.calib"));
    ASSERT_EQ(installed.unreadable.size(), 1U) << "that there is none is fine";
    const std::string bonus = (folder() / U"bonus").utf8();
    EXPECT_THAT(installed.unreadable[0].path().utf8(), testing::StartsWith(bonus));
    EXPECT_THAT(installed.unreadable[0].reason(), testing::HasSubstr("is not a folder"));
    const LibrarySet set = loadInstalledLibraries();
    EXPECT_EQ(set.loaded.size(), 2U);
    ASSERT_EQ(set.broken.size(), 1U);
    EXPECT_THAT(set.broken[0].path.utf8(), testing::StartsWith(bonus));
}

}  // namespace
