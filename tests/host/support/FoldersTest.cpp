#include "host/support/Folders.h"

#include "host/fixtures/Fixtures.h"

#include <filesystem>

using namespace VelkHost;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

class Folders : public test::TestHost
{
protected:
    fileString at(const char32_t* name) const { return folder() / name; }
};

TEST_F(Folders, AreMadeWithTheirParents)
{
    makeFolder(at(U"a/b"));
    makeFolder(at(U"a/b"));
    EXPECT_TRUE(isFolder(at(U"a/b")));
    test::writeFile(at(U"file"), "x");
    EXPECT_FALSE(isFolder(at(U"file")));
    EXPECT_FALSE(isFolder({}));
    EXPECT_THAT(test::reasonOf([&] { makeFolder(at(U"file")); }), StartsWith("cannot be created as a folder"));
    EXPECT_THAT(test::reasonOf([&] { makeFolder(at(U"file/below")); }), StartsWith("cannot be created as a folder: "));
}

TEST_F(Folders, AreListedByName)
{
    makeFolder(at(U"list/b.txt"));
    for (const char32_t* name : {U"list/c.txt", U"list/a.txt", U"list/K\u00FCche.csv"})
        test::writeFile(at(name), "x");
    std::vector<std::string> names;
    for (const FolderEntry& entry : folderEntries(at(U"list")))
        names.push_back(entry.name.utf8() + (entry.isFolder ? "/" : ""));
    EXPECT_THAT(names, ElementsAre("K\xC3\xBC"
                                   "che.csv",
                                   "a.txt", "b.txt/", "c.txt"));
    EXPECT_THAT(filesInFolder(at(U"list"), ".txt"), ElementsAre(at(U"list") / U"a.txt", at(U"list") / U"c.txt"));
    EXPECT_THAT(test::reasonOf([&] { folderEntries(at(U"none")); }), StartsWith("cannot be read: "));
}

TEST_F(Folders, TellWhyNothingIsThere)
{
    test::writeFile(at(U"file"), "x");
    EXPECT_FALSE(absenceOf(at(U"file")));
    EXPECT_FALSE(absenceOf(folder()));
    for (const char32_t* name : {U"none", U"none/below"}) {
        const std::optional<Absence> absence = absenceOf(at(name));
        ASSERT_TRUE(absence);
        EXPECT_TRUE(absence->isFree);
        EXPECT_EQ(absence->why.english(), "does not exist");
    }
    for (const char32_t* name : {U"file/below", U"file/deeper/below", U"file/"}) {
        const std::optional<Absence> absence = absenceOf(at(name));
        ASSERT_TRUE(absence);
        EXPECT_FALSE(absence->isFree);
        EXPECT_EQ(absence->why.english(), "does not exist: " + at(U"file").utf8() + " is not a folder");
    }
}

TEST_F(Folders, CountFromTheCurrentOne)
{
    const std::u8string current = std::filesystem::current_path().u8string();
    const fileString here(std::string(current.begin(), current.end()));
    EXPECT_EQ(absolutePath(fileString(U"a") / U"b"), here / U"a" / U"b");
    EXPECT_EQ(absolutePath(at(U"a")), at(U"a"));
}

}  // namespace
