#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "host/catalog/CatalogFile.h"
#include "host/support/System.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>

using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;

namespace {

class Tour : public test::TestHost
{
protected:
    ProgramRun velk(const std::vector<std::string>& arguments) const
    {
        ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    VelkHost::Catalog installed(const std::u32string& path) const
    {
        return VelkHost::readCatalog(folder() / path, VelkHost::CatalogContent::Names);
    }

    void writeFurniture(const std::u32string& name, const std::string& item, std::size_t modelBytes) const
    {
        FileUtils::createDirectoriesWithPerm(folder() / U"furniture");
        test::writeZip(folder() / U"furniture" / name,
                       {{"PluginFurnitureCatalog.properties", "id=" + item + "\nname=" + item + "\nname#1=" + item +
                                                                  " door\ncategory#1=Room\nmodel#1=/models/m.obj\n"},
                        {"PluginFurnitureCatalog_de.properties", "name#1=T\\u00fcr\ncategory#1=Raum\n"},
                        {"models/m.obj", std::string(modelBytes, 'm')},
                        {"models/m.mtl", "material"}});
    }
};

TEST_F(Tour, TellsTheStoryOfTheSample)
{
    const ProgramRun run = velk({"tour", "--sample", "-o", "my tour"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    for (const char* chapter : {"\n1. Build libraries", "\n2. Publish them", "\n3. Serve it", "\n4. Update an empty",
                                "\n5. Search", "\n6. Narrow a search", "\n7. Publish a changed", "\n8. Update again",
                                "\n9. Search again", "\n10. Update once more", "\n11. Now your own"})
        EXPECT_THAT(run.output, HasSubstr(chapter));
    EXPECT_THAT(run.output, HasSubstr("(door OR window) -garage"));
    EXPECT_THAT(run.output, HasSubstr("--legacy " + VelkHost::shellQuoted("dining table")));
    EXPECT_THAT(run.output, Not(HasSubstr("\n0 hits")));
    EXPECT_THAT(run.output, HasSubstr("Everything is up to date."));
    EXPECT_EQ(installed(U"my tour/home/core/Sample house.calib").language, "de");
    EXPECT_EQ(installed(U"my tour/home/core/Sample office.calib").language, "en");
    EXPECT_EQ(ZipUtils::getSizeOfArchive(folder() / U"my tour/home/referenced/Sample garden house.zip"), 40U);
}

TEST_F(Tour, ShowsFiltersAndManufacturersAtWork)
{
    const ProgramRun run = velk({"tour", "--sample", "-o", "t"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("of 3 libraries in "));
    EXPECT_THAT(run.output, HasSubstr("Made the filter \"Core only\" with 2 libraries.\n"));
    EXPECT_THAT(run.output, HasSubstr("of 2 libraries in "));
    EXPECT_THAT(run.output, HasSubstr("3 manufacturers: 3 new, 0 changed, 0 gone; another default text.\n"));
    EXPECT_THAT(run.output, HasSubstr(" 1  Sample doors  changed  phone, logo image\n"));
    EXPECT_THAT(run.output, HasSubstr("Everything is up to date (3 manufacturers).\n"));
    const fileString logo(std::string("manufacturer-1.png"));
    EXPECT_EQ(test::readFile(folder() / U"t/home/manufacturer-data" / logo),
              test::readFile(folder() / U"t/content/logos" / logo));
}

TEST_F(Tour, MakesManufacturersOfThoseWhomLibrariesName)
{
    FileUtils::createDirectoriesWithPerm(folder() / U"furniture");
    test::writeZip(
        folder() / U"furniture/a.sh3f",
        {{"PluginFurnitureCatalog.properties",
          "id=a\nname=a\nprovider=www.example.org\nname#1=Door\ncategory#1=Room\ncreator#1=Ann\nicon#1=/1.png\n"
          "name#2=Desk\ncategory#2=Room\ncreator#2=Ann\nicon#2=/2.png\nname#3=Bed\ncategory#3=Room\n"
          "creator#3=Bob\n"},
         {"PluginFurnitureCatalog_de.properties", "name#1=T\\u00fcr\n"},
         {"1.png", test::png("1")},
         {"2.png", test::png("2")}});
    writeFurniture(U"b.sh3f", "B", 10);
    const ProgramRun run = velk({"tour", "furniture", "-o", "out"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("manufacturer_data.json: 4 manufacturers, 1 logo\n"));
    const std::string list = velk({"manufacturer", "list", "--home", "out/home"}).output;
    EXPECT_THAT(list, testing::ContainsRegex(" 1  Ann +555 0123  default  default  manufacturer-1.png\n"));
    EXPECT_THAT(list, HasSubstr(" 4  www.example.org  https://www.example.org  default   default  default\n"));
    EXPECT_EQ(test::readFile(folder() / U"out/home/manufacturer-data/manufacturer-1.png"), test::png("2"));
}

TEST_F(Tour, LetsOnlyWhatChangedTravel)
{
    writeFurniture(U"a.sh3f", "A", 10);
    writeFurniture(U"b.sh3f", "B", 100'000);
    writeFurniture(U"c.sh3f", "C", 200'000);
    writeFurniture(U"d.sh3f", "D", 400'000);
    const ProgramRun run = velk({"tour", "furniture", "-o", "out"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("  b.calib   unchanged"));
    EXPECT_THAT(run.output, HasSubstr("  d.calibz  unchanged"));
    EXPECT_THAT(run.output, HasSubstr("That saved "));
    EXPECT_EQ(installed(U"out/home/core/a.calib").items[0].name, "T\xC3\xBCr");
    EXPECT_EQ(installed(U"out/home/core/b.calib").items[0].name, "B door");
    EXPECT_EQ(installed(U"out/home/bonus/c.calib").items[0].name, "T\xC3\xBCr");
    EXPECT_EQ(installed(U"out/home/bonus/d.calib").items[0].name, "D door");
    std::vector<std::string> names;
    for (const fileString& name : ZipUtils::getFilenamesInArchive(folder() / U"out/home/referenced/d.zip"))
        names.push_back(name.utf8());
    EXPECT_THAT(names, testing::UnorderedElementsAre("models/m.obj", "models/m.mtl"));
}

TEST_F(Tour, CanBeTakenAgain)
{
    EXPECT_EQ(velk({"tour", "--sample", "-o", "tour"}).exitCode, 0);
    const ProgramRun again = velk({"tour", "--sample", "-o", "tour"});
    EXPECT_EQ(again.exitCode, 0) << again.errors;
    EXPECT_THAT(again.output, HasSubstr("Published edition 1 "));
}

TEST_F(Tour, RemovesNothingThatItDidNotMake)
{
    FileUtils::createDirectoriesWithPerm(folder() / U"mine/site");
    const ProgramRun run = velk({"tour", "--sample", "-o", "mine"});
    EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(run.errors, HasSubstr("was not made by a tour"));
    EXPECT_TRUE((folder() / U"mine/site").pathExists());
}

TEST_F(Tour, NeedsLibraries)
{
    FileUtils::createDirectoriesWithPerm(folder() / U"empty");
    EXPECT_THAT(velk({"tour", "empty", "-o", "out"}).errors, HasSubstr("holds no .sh3f file"));
    EXPECT_THAT(velk({"tour", "none", "-o", "out"}).errors, HasSubstr("is not a folder"));
}

}  // namespace
