#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "host/catalog/CatalogFile.h"
#include "support/QtProcesses.h"

#include <VelkCommon/Files/FileUtils.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>

#include <list>

using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// The real program in an installation at "home".
class FilterCommand : public test::TestHost
{
protected:
    FilterCommand() { FileUtils::createDirectoriesWithPerm(core()); }

    ProgramRun velk(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--home", "home"});
        ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    ProgramRun filter(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "filter");
        return velk(arguments);
    }

    /// Runs a command that must succeed.
    void have(const std::vector<std::string>& arguments) const
    {
        const ProgramRun run = filter(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
    }

    void writeLibrary(const fileString& path, const std::string& id) const
    {
        VelkHost::Catalog catalog = test::smallCatalog();
        catalog.id = id;
        catalog.name = "Library " + id;
        VelkHost::writeCatalog(catalog, path);
    }

    fileString core() const { return folder() / U"home" / U"core"; }
    fileString file() const { return core() / U"catalog_filters.json"; }
};

TEST_F(FilterCommand, MakesFilters)
{
    EXPECT_EQ(filter({"list"}).output, "There are no filters; \"velk filter add\" makes one.\n");
    writeLibrary(core() / U"a.calib", "lib-a");
    const ProgramRun made = filter({"add", "Kitchens", "--library", "home/core/a.calib", "--id", "lib-x"});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    EXPECT_EQ(made.output, "Made the filter \"Kitchens\" with 2 libraries.\n");
    EXPECT_EQ(filter({"add", "Kitchens", "--id", "lib-x", "--id", "lib-y"}).output,
              "Added 1 library to the filter \"Kitchens\", which now has 3.\n");
    EXPECT_EQ(filter({"list"}).output,
              "  Name      Id  Libraries\n"
              "  Kitchens   1          3\n");
    EXPECT_EQ(filter({"show", "Kitchens"}).output,
              "Library  Name             Type\n"
              "lib-x    (not installed)\n"
              "lib-a    Library lib-a    bonus\n"
              "lib-y    (not installed)\n");
}

TEST_F(FilterCommand, LosesNoFilterWhenManyAreMadeAtOnce)
{
    constexpr int many = 16;
    std::list<QProcess> running;
    for (int i = 0; i < many; ++i) {
        QProcess& process = running.emplace_back();
        process.setWorkingDirectory(QString::fromStdString(folder().utf8()));
        process.start(QStringLiteral(VELK_PROGRAM),
                      {QStringLiteral("filter"), QStringLiteral("add"), QStringLiteral("filter %1").arg(i),
                       QStringLiteral("--id"), QStringLiteral("1"), QStringLiteral("--home"), QStringLiteral("home")});
    }
    for (QProcess& process : running) {
        test::waitForEnd(process);
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
    EXPECT_EQ(filter({"list", "--format", "json"}).json()[QStringLiteral("filters")].toArray().size(), many);
    EXPECT_THAT(test::listFolder(core()), testing::ElementsAre("catalog_filters.json"));
}

TEST_F(FilterCommand, TakesAFolderOfLibraries)
{
    writeLibrary(core() / U"a.calib", "lib-a");
    writeLibrary(core() / U"b.calib", "lib-b");
    EXPECT_EQ(filter({"add", "All", "-l", "home/core"}).output, "Made the filter \"All\" with 2 libraries.\n");
}

TEST_F(FilterCommand, KeepsIdsAsTheyAre)
{
    have({"add", "F", "--id", "Lib", "--id", "lib", "--id", " lib", "--id", "[a,b]"});
    const QJsonArray ids = filter({"show", "F", "--format", "json"}).json()[QStringLiteral("libraries")].toArray();
    ASSERT_EQ(ids.size(), 4);
    EXPECT_EQ(ids[0].toObject()[QStringLiteral("id")].toString(), QStringLiteral("Lib"));
    EXPECT_EQ(ids[2].toObject()[QStringLiteral("id")].toString(), QStringLiteral(" lib"));
    EXPECT_EQ(ids[3].toObject()[QStringLiteral("id")].toString(), QStringLiteral("[a,b]"));
}

TEST_F(FilterCommand, ListsByName)
{
    have({"add", "b", "--id", "1"});
    have({"add", "C", "--id", "1"});
    have({"add", "A", "--id", "1", "--id", "2"});
    have({"current", "C"});
    EXPECT_EQ(filter({"list"}).output,
              "   Name  Id  Libraries\n"
              "   A      3          2\n"
              "   b      1          1\n"
              "*  C      2          1\n");
    const QJsonObject list = filter({"list", "--format", "json"}).json();
    EXPECT_EQ(list[QStringLiteral("currentId")].toInt(), 2);
    const QJsonObject last = list[QStringLiteral("filters")].toArray().at(2).toObject();
    EXPECT_EQ(last[QStringLiteral("name")].toString(), QStringLiteral("C"));
    EXPECT_TRUE(last[QStringLiteral("current")].toBool());
}

TEST_F(FilterCommand, PutsAFilterInForce)
{
    have({"add", "Baths", "--id", "1"});
    EXPECT_EQ(filter({"current"}).output, "No filter\n");
    EXPECT_TRUE(filter({"current", "--format", "json"}).json()[QStringLiteral("current")].isNull());
    EXPECT_EQ(filter({"current", "Baths"}).output, "Baths\n");
    EXPECT_THAT(test::readFile(file()), HasSubstr("\"Current_Filter\": 1"));
    EXPECT_EQ(filter({"current", "--format", "json"})
                  .json()[QStringLiteral("current")]
                  .toObject()[QStringLiteral("name")]
                  .toString(),
              QStringLiteral("Baths"));
    const ProgramRun unknown = filter({"current", "baths"});
    EXPECT_EQ(unknown.exitCode, test::exitCode::dataFailed);
    EXPECT_EQ(unknown.errors, "velk: there is no filter \"baths\"\nThe filters are:\n  Baths\n");
    EXPECT_EQ(filter({"current"}).output, "Baths\n");
    EXPECT_EQ(filter({"current", "--none"}).output, "No filter\n");
    EXPECT_EQ(filter({"current"}).output, "No filter\n");
}

TEST_F(FilterCommand, ShowsNoFilterWhenTheCurrentOneIsNotThere)
{
    test::writeFile(file(), R"({"Current_Filter": 5, "Filter":
        {"Filter_Name": "Baths", "Filter_Id": 2, "Database_Ids": []}})");
    EXPECT_EQ(filter({"current"}).output, "No filter\n");
    EXPECT_EQ(filter({"show", "Baths"}).output, "The filter names no library, so nothing passes it.\n");
}

TEST_F(FilterCommand, RemovesLibrariesAndFilters)
{
    have({"add", "A", "--id", "1", "--id", "2", "--id", "3"});
    have({"add", "B", "--id", "1"});
    have({"current", "A"});
    EXPECT_EQ(filter({"remove", "A", "--id", "1", "--id", "3"}).output, "Took 2 libraries out of the filter \"A\".\n");
    const ProgramRun again = filter({"remove", "A", "--id", "2", "--id", "3"});
    EXPECT_EQ(again.exitCode, test::exitCode::dataFailed);
    EXPECT_EQ(again.errors, "velk: the filter \"A\" does not have the library \"3\"\n");
    EXPECT_THAT(filter({"show", "A"}).output, HasSubstr("\n2 ")) << "all or nothing";
    EXPECT_EQ(filter({"remove", "A"}).output, "Removed the filter \"A\"; now no filter is in force.\n");
    EXPECT_EQ(filter({"remove", "A"}).exitCode, test::exitCode::dataFailed);
    EXPECT_EQ(filter({"remove", "B"}).output, "Removed the filter \"B\".\n");
    EXPECT_FALSE(file().pathExists()) << "the module writes no empty list";
    EXPECT_EQ(filter({"list", "--format", "json"}).exitCode, 0);
    EXPECT_THAT(filter({"show", "B"}).errors, HasSubstr("There are none yet; \"velk filter add\" makes one."));
}

// ---- Merging -------------------------------------------------------------------------------------

TEST_F(FilterCommand, MergesAnotherFile)
{
    const std::string other = R"({"Current_Filter": 7,
        "Filter": {"Filter_Name": "Baths", "Filter_Id": 7, "Database_Ids": ["x"]},
        "Filter": {"Filter_Name": "Halls", "Filter_Id": 1, "Database_Ids": ["y"]},
        "Filter": {"Filter_Name": "Doors", "Filter_Id": 3, "Database_Ids": ["z"]}})";
    test::writeFile(folder() / U"other.json", other);
    have({"add", "Baths", "--id", "other"});
    have({"add", "Doors", "--id", "z"});
    have({"current", "Doors"});
    const ProgramRun run = filter({"merge", "other.json"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "  Halls\n  Baths 1\n2 filters added from other.json; 1 filter was here already.\n");
    EXPECT_EQ(test::readFile(folder() / U"other.json"), other);
    EXPECT_EQ(filter({"current"}).output, "Doors\n");
    EXPECT_EQ(filter({"list"}).output,
              "   Name     Id  Libraries\n"
              "   Baths     1          1\n"
              "   Baths 1   3          1\n"
              "*  Doors     2          1\n"
              "   Halls     0          1\n");
    const QJsonObject again = filter({"merge", "home/core/catalog_filters.json", "--format", "json"}).json();
    EXPECT_TRUE(again[QStringLiteral("came")].toArray().isEmpty());
    EXPECT_EQ(again[QStringLiteral("present")].toInt(), 4);
}

TEST_F(FilterCommand, MergesIntoAnEmptyInstallation)
{
    test::writeFile(folder() / U"other.json",
                    R"({"Current_Filter": 7, "Filter": {"Filter_Name": "A", "Filter_Id": 7, "Database_Ids": []}})");
    FileUtils::removeDirectoryAndFiles(folder() / U"home", FileUtils::noFlags);
    EXPECT_EQ(filter({"merge", "other.json"}).output, "  A\n1 filter added from other.json.\n");
    EXPECT_EQ(filter({"current"}).output, "No filter\n");
}

TEST_F(FilterCommand, MergesNothingFromAFileWithoutFilters)
{
    test::writeFile(folder() / U"other.json", "{}");
    EXPECT_EQ(filter({"merge", "other.json"}).output, "0 filters added from other.json.\n");
    EXPECT_FALSE(file().pathExists());
}

// ---- What goes wrong -----------------------------------------------------------------------------

struct DamageCase
{
    const char* name;
    const char* text;
};

const DamageCase damageCases[] = {
    {"Empty", ""},
    {"NoJson", "hello"},
    {"NoObject", "[]"},
    {"TornApart", R"({"Current_Filter": 2, "Filter": {"Filter_Name": "A", "Filt)"},
    {"WrongMember",
     R"({"Filter": {"Filter_Name": "A", "Filter_Id": 3.0, "Database_Ids": []},
         "Filter": {"Filter_Name": "B", "Filter_Id": 1, "Database_Ids": ["x"]}})"},
};

class DamagedFilters : public FilterCommand, public testing::WithParamInterface<DamageCase>
{};

TEST_P(DamagedFilters, AreLeftAlone)
{
    test::writeFile(file(), GetParam().text);
    writeLibrary(core() / U"a.calib", "x");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"filter", "list"},
                                                      {"filter", "add", "B", "--id", "y"},
                                                      {"filter", "current", "--none"},
                                                      {"search", "chair", "--filter", "B"}}) {
        const ProgramRun run = velk(arguments);
        EXPECT_EQ(run.exitCode, test::exitCode::dataFailed) << arguments[1];
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, HasSubstr("velk: " + file().utf8() + ": is "));
        EXPECT_THAT(run.errors, HasSubstr("repair it, or move it away\n"));
        EXPECT_EQ(test::readFile(file()), GetParam().text);
    }
    EXPECT_EQ(velk({"search", "chair"}).exitCode, 0) << "without a filter the file plays no part";
}

TEST_P(DamagedFilters, AreNotMerged)
{
    have({"add", "Mine", "--id", "1"});
    const std::string before = test::readFile(file());
    test::writeFile(folder() / U"other.json", GetParam().text);
    const ProgramRun run = filter({"merge", "other.json"});
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_THAT(run.errors, HasSubstr("velk: other.json: is "));
    EXPECT_EQ(test::readFile(file()), before);
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedFilters, testing::ValuesIn(damageCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FilterCommand, SaysThatNothingWasSaved)
{
    FileUtils::removeDirectoryAndFiles(core(), FileUtils::noFlags);
    test::writeFile(core(), "a file");
    const ProgramRun run = filter({"add", "A", "--id", "1"});
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_THAT(run.errors, HasSubstr("cannot be created as a folder"));
    EXPECT_EQ(filter({"merge", "none.json"}).errors, "velk: none.json: does not exist\n");
}

TEST_F(FilterCommand, NamesTheLibraryThatCannotBeRead)
{
    const ProgramRun run = filter({"add", "A", "--library", "none.calib"});
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_EQ(run.errors, "velk: none.calib: does not exist\n");
    EXPECT_FALSE(file().pathExists());
}

TEST_F(FilterCommand, LetsNoNameSteerTheTerminal)
{
    have({"add", "a\x1B[31m", "--id", "\x1B[2J"});
    EXPECT_THAT(filter({"list"}).output, Not(HasSubstr("\x1B")));
    EXPECT_THAT(filter({"show", "a\x1B[31m"}).output, Not(HasSubstr("\x1B")));
    EXPECT_THAT(filter({"current", "a\x1B[31m"}).output, HasSubstr("a\uFFFD[31m"));
    EXPECT_THAT(filter({"current", "b"}).errors, Not(HasSubstr("\x1B")));
}

struct FilterUsageCase
{
    const char* name;
    std::vector<std::string> arguments;
    const char* errors;
};

const FilterUsageCase filterUsageCases[] = {
    {"NoCommand", {"filter"}, "see \"velk filter --help\""},
    {"NoName", {"filter", "show"}, "NAME is required"},
    {"EmptyName", {"filter", "add", "", "--id", "1"}, "NAME: must not be empty"},
    {"EmptyCurrent", {"filter", "current", ""}, "NAME: must not be empty"},
    {"NoLibrary", {"filter", "add", "A"}, "--library or --id"},
    {"NameAndNone", {"filter", "current", "A", "--none"}, "--none excludes NAME"},
    {"NoFile", {"filter", "merge"}, "FILE is required"},
    {"BadFormat", {"filter", "list", "--format", "xml"}, "xml not in {table,json}"},
    {"EmptyFilter", {"search", "a", "--filter", ""}, "--filter: must not be empty"},
};

class WrongFilterUsage : public FilterCommand, public testing::WithParamInterface<FilterUsageCase>
{};

TEST_P(WrongFilterUsage, IsExplained)
{
    const ProgramRun run = test::runProgram(folder(), GetParam().arguments);
    EXPECT_EQ(run.exitCode, test::exitCode::usage);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("velk: "));
    EXPECT_THAT(run.errors, HasSubstr(GetParam().errors));
}

INSTANTIATE_TEST_SUITE_P(CommandLines, WrongFilterUsage, testing::ValuesIn(filterUsageCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Searching -----------------------------------------------------------------------------------

TEST_F(FilterCommand, LimitsASearch)
{
    writeLibrary(core() / U"a.calib", "lib-a");
    writeLibrary(core() / U"b.calib", "lib-b");
    have({"add", "B", "--id", "lib-b", "--id", "not installed"});
    have({"add", "A", "--id", "LIB-A"});
    have({"current", "B"});
    EXPECT_THAT(velk({"search", "chair"}).output, HasSubstr("8 hits. ")) << "the current filter plays no part";
    const ProgramRun limited = velk({"search", "chair", "--filter", "B"});
    EXPECT_EQ(limited.exitCode, 0) << limited.errors;
    EXPECT_THAT(limited.output, HasSubstr("4 hits. "));
    EXPECT_THAT(limited.output, Not(HasSubstr("Library lib-a")));
    const QJsonObject json = velk({"search", "chair", "--filter", "B", "--format", "json"}).json();
    EXPECT_EQ(json[QStringLiteral("filter")].toString(), QStringLiteral("B"));
    EXPECT_EQ(json[QStringLiteral("libraries")].toArray().size(), 1);
    EXPECT_EQ(json[QStringLiteral("found")].toInt(), 4);
}

TEST_F(FilterCommand, SaysWhyAFilterLeavesNothing)
{
    writeLibrary(core() / U"a.calib", "lib-a");
    writeLibrary(folder() / U"b.calib", "lib-b");
    have({"add", "B", "--id", "lib-b"});
    ProgramRun run = velk({"search", "chair", "--filter", "B"});
    EXPECT_EQ(run.exitCode, test::exitCode::brokenLibrary);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("velk: none of these libraries is in the filter \"B\"\n"));
    EXPECT_EQ(velk({"search", "chair", "--filter", "B", "--library", "b.calib"}).exitCode, 0);
    run = velk({"search", "chair", "--filter", "b"});
    EXPECT_EQ(run.exitCode, test::exitCode::dataFailed);
    EXPECT_EQ(run.errors, "velk: there is no filter \"b\"\nThe filters are:\n  B\n");
}

}  // namespace
