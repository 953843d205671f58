#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"
#include "host/fixtures/ProgramRun.h"

#include "host/catalog/CatalogFile.h"
#include "support/Names.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Version.h>

#include <QJsonArray>

using test::ProgramRun;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Runs the real program in its own folder.
class VelkProgram : public test::TestHost
{
protected:
    ProgramRun velk(const std::vector<std::string>& arguments) const
    {
        ProgramRun run = test::runProgram(folder(), arguments);
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    std::string path(const std::u32string& name) const { return (folder() / name).utf8(); }

    /// A furniture library with one item in two languages.
    void writeFurniture(const std::u32string& name) const
    {
        test::writeZip(
            folder() / name,
            {{"PluginFurnitureCatalog.properties",
              "id=t\nname=Test\nname#1=Door\ncategory#1=Room\ntags#1=Seat\nname#2=Dining table\ncategory#2=Room\n"},
             {"PluginFurnitureCatalog_de.properties", "name#1=T\\u00fcr\ncategory#1=Raum\ntags#1=Sitz\n"}});
    }
};

TEST_F(VelkProgram, TeachesByExample)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {"--help"}, {"-h"}}) {
        const ProgramRun run = velk(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.output, HasSubstr("velk catalog sample -o sample.calib"));
        EXPECT_THAT(run.output, HasSubstr("velk search chair --library sample.calib"));
        EXPECT_EQ(run.errors, "");
    }
    EXPECT_THAT(velk({"search", "--help"}).output, HasSubstr("Exit codes"));
    EXPECT_THAT(velk({"catalog", "build", "--help"}).output, HasSubstr("name_de"));
}

/// Longer than the 259 characters that Windows takes as they are.
TEST_F(VelkProgram, TakesALongPathFromTheCurrentFolder)
{
    fileString longFolder;
    for (char name = 'a'; name < 'g'; ++name)
        longFolder = longFolder / fileString(std::string(50, name));
    ASSERT_EQ(Velk::makeFolders(folder() / longFolder / U"core"), std::nullopt);
    const std::string sample = (longFolder / U"core" / U"s.calib").utf8();
    const ProgramRun made = velk({"catalog", "sample", "-o", sample});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    EXPECT_THAT(velk({"search", "dining", "--library", sample}).output, HasSubstr("hits. "));
    const ProgramRun published = velk({"publish", longFolder.utf8(), "-o", (longFolder / U"site").utf8()});
    EXPECT_EQ(published.exitCode, 0) << published.errors;
    EXPECT_THAT(published.output, HasSubstr(": 1 library, "));
    EXPECT_TRUE(FileUtils::pathExists(folder() / longFolder / U"site" / U"current"));
    EXPECT_TRUE(FileUtils::removeDirectoryAndFiles(folder() / fileString(std::string(50, 'a')), FileUtils::noFlags));
}

#ifdef _WIN32
TEST_F(VelkProgram, TellsWindowsThatItKnowsLongPathsAndUtf8)
{
    const std::string bytes = test::readFile(fileString(std::string(VELK_PROGRAM)));
    EXPECT_THAT(bytes, HasSubstr("<longPathAware xmlns="));
    EXPECT_THAT(bytes, HasSubstr(">UTF-8</activeCodePage>"));
}
#endif

TEST_F(VelkProgram, FindsWhatFits)
{
    velk({"catalog", "sample", "-o", "s.calib"});
    const ProgramRun run = velk({"search", "chair", "--library", "s.calib", "--fits", "500x470x-"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("  Chair  "));
    EXPECT_THAT(run.output, HasSubstr("\n3 more items do not fit.\n1 hit. "));
    EXPECT_EQ(velk({"search", "chair", "--library", "s.calib", "--fits", "1x1x1"}).exitCode, 1);
}

TEST_F(VelkProgram, RefusesASizeThatIsNone)
{
    const ProgramRun run = velk({"search", "chair", "--fits", "800x600"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.errors, HasSubstr("\"800x600\" is no size such as 800x600x- (millimetres)"));
    EXPECT_EQ(velk({"search", "chair", "--fits", "8x8x8", "--kind", "folders"}).exitCode, 2);
}

TEST_F(VelkProgram, SearchesTheSample)
{
    const ProgramRun made = velk({"catalog", "sample", "-o", "s.calib"});
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_THAT(made.output, StartsWith("s.calib: Sample house (en), 40 items in 15 folders, 40 thumbnails, "));
    const ProgramRun run = velk({"search", "dining", "chair", "--library", "s.calib"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("1  ItemExactName  Dining chair  460 \u00D7 540 \u00D7 920  Sample house \u203A "
                                      "Furniture \u203A Seating \u203A "
                                      "Chairs  seat, oak\n"));
    EXPECT_THAT(run.output, HasSubstr("1 hit. Rated 40 items and 15 folders of 1 library in "));
    EXPECT_EQ(run.errors, "");
}

TEST_F(VelkProgram, SearchesInstalledLibraries)
{
    ProgramRun run = velk({"search", "chair"});
    EXPECT_EQ(run.exitCode, test::exitCode::brokenLibrary);
    EXPECT_THAT(run.errors, HasSubstr("velk: no libraries are installed\n"));
    EXPECT_THAT(run.errors, HasSubstr("velk catalog sample -o sample.calib"));
    ASSERT_THAT(run.errors, HasSubstr("\n  " + folder().utf8()));
    // The first folder named is that of the core libraries.
    const std::size_t start = run.errors.find("\n  " + folder().utf8()) + 3;
    const fileString core(run.errors.substr(start, run.errors.find('\n', start) - start));
    FileUtils::createDirectoriesWithPerm(core);
    VelkHost::writeCatalog(test::smallCatalog(), core / U"a.calib");
    run = velk({"search", "chair"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("4 hits. "));
}

TEST_F(VelkProgram, TellsWhetherThereAreHits)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    EXPECT_EQ(velk({"search", "chair", "-l", "a.calib"}).exitCode, 0);
    EXPECT_EQ(velk({"search", "zebra", "-l", "a.calib"}).exitCode, test::exitCode::noHit);
    for (const char* text : {"", " ", "((", "\"", "NOT chair"})
        EXPECT_EQ(velk({"search", text, "-l", "a.calib"}).exitCode, test::exitCode::noHit) << text;
}

TEST_F(VelkProgram, SearchesTheOthersWhenALibraryIsBroken)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    test::writeFile(folder() / U"b.calib", "broken");
    const ProgramRun run =
        velk({"search", "chair", "--library", "none.calib", "--library", "b.calib", "--library", "a.calib"});
    EXPECT_EQ(run.exitCode, test::exitCode::brokenLibrary);
    EXPECT_EQ(run.errors, "velk: none.calib: does not exist\nvelk: b.calib: is not a library catalog\n");
    EXPECT_THAT(run.output, HasSubstr("4 hits. "));
    EXPECT_EQ(velk({"search", "zebra", "-l", "b.calib"}).exitCode, test::exitCode::brokenLibrary);
}

TEST_F(VelkProgram, ShowsJson)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    const ProgramRun run =
        velk({"search", "chair", "-l", "a.calib", "--format", "json", "--kind", "items", "--limit", "1"});
    const QJsonObject document = run.json();
    EXPECT_EQ(document[QStringLiteral("found")].toInt(), 3);
    EXPECT_EQ(document[QStringLiteral("ratedFolders")].toInt(), 0);
    EXPECT_EQ(document[QStringLiteral("hits")][0][QStringLiteral("name")].toString(), QStringLiteral("Chair"));
    EXPECT_TRUE(document[QStringLiteral("hits")][1].isUndefined());
}

TEST_F(VelkProgram, FindsTheItemWithAnId)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    const ProgramRun run = velk({"search", "--id", "id#2", "-l", "a.calib"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("1  Id     Office chair"));
    EXPECT_THAT(run.output, HasSubstr("1 hit. Looked at 4 items of 1 library"));
    EXPECT_EQ(velk({"search", "--id", "ID#2", "-l", "a.calib"}).exitCode, test::exitCode::noHit);
}

TEST_F(VelkProgram, MatchesWholeWordsInLegacySearches)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    const ProgramRun run = velk({"search", "--legacy", "chair", "-l", "a.calib"});
    EXPECT_THAT(run.output, HasSubstr("2 hits. "));
    EXPECT_THAT(run.output, testing::Not(HasSubstr("Armchair")));
}

TEST_F(VelkProgram, TakesTextAsTyped)
{
    // Each of these arguments means something special to some command line parser.
    for (const char* text : {"[oak]", "[a,b]", "%%", "%x", "search", "catalog", "tour", "/h", "a=b", "\u6905"})
        EXPECT_THAT(velk({"search", "--explain", "--", text}).output,
                    HasSubstr("1. all of:  \"" + std::string(text) + "\"\n"))
            << text;
    EXPECT_EQ(velk({"search", "--explain", "--", "-"}).exitCode, test::exitCode::noHit);
    EXPECT_THAT(velk({"search", "[oak]", "search", "--explain"}).output, HasSubstr("all of:  \"[oak]\", \"search\"\n"));
    EXPECT_THAT(velk({"search", "--explain", "--", "-red", "chair"}).output,
                HasSubstr("all of:  \"chair\"\n   none of: \"red\"\n"));
}

TEST_F(VelkProgram, TellsItsVersion)
{
    const ProgramRun run = velk({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "velk " VELK_VERSION_STRING "\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(VelkProgram, HelpsByCommandAsByOption)
{
    EXPECT_EQ(velk({"help"}).output, velk({"--help"}).output);
    const ProgramRun run = velk({"help", "search"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, velk({"search", "--help"}).output);
    EXPECT_THAT(run.output, HasSubstr("velk search"));
}

struct UsageCase
{
    const char* name;
    std::vector<std::string> arguments;
    const char* errors;  // which they hold
};

const UsageCase usageCases[] = {
    {"MistypedCommand",
     {"serch", "chair"},
     "velk: there is no command \"serch\"\nDid you mean \"velk search\"? The commands are search, catalog, "},
    {"UnknownCommand", {"frobnicate"}, "velk: there is no command \"frobnicate\"\nThe commands are search, catalog, "},
    {"MistypedSubcommand",
     {"filter", "shw"},
     "velk: there is no command \"velk filter shw\"\nDid you mean \"velk filter show\"? Its commands are list, show, "},
    {"MistypedManufacturerCommand", {"manufacturer", "lst"}, "\nDid you mean \"velk manufacturer list\"? "},
    {"MistypedCatalogCommand", {"catalog", "biuld", "a.csv"}, "\nDid you mean \"velk catalog build\"? "},
    {"MistypedTexturesCommand",
     {"textures", "mrge", "a.zip", "b.zip"},
     "\nDid you mean \"velk textures merge\"? Its command is merge; see \"velk textures --help\".\n"},
    {"MistypedCommandToHelpWith", {"help", "catalog", "xbuild"}, "\nDid you mean \"velk catalog build\"? "},
    {"UnknownSubcommand",
     {"filter", "search"},
     "velk: there is no command \"velk filter search\"\nIts commands are list, show, add, remove, current and merge; "
     "see \"velk filter --help\".\n"},
    {"UnknownOption",
     {"search", "chair", "--bar"},
     "velk: \"velk search\" has no option \"--bar\"\nSee \"velk search --help\". A search text that begins with"},
    {"MistypedOption",
     {"search", "chair", "--libary", "a.calib"},
     "velk: \"velk search\" has no option \"--libary\"\nDid you mean \"--library\"? See \"velk search --help\"."},
    {"MistypedOptionWithValue",
     {"search", "chair", "--lmit=3"},
     "has no option \"--lmit\"\nDid you mean \"--limit\"? "},
    {"MistypedRequiredOption", {"update", "--servce", "http://x/"}, "\nDid you mean \"--service\"? "},
    {"MistypedOptionOfTheProgram",
     {"--verson"},
     "velk: \"velk\" has no option \"--verson\"\nDid you mean \"--version\"? "},
    {"OptionBeforeTheCommand",
     {"filter", "--home", "x", "list"},
     "velk: \"velk filter\" has no option \"--home\"\nSee \"velk filter --help\".\n"},
    {"ShortUnknownOption", {"search", "chair", "-x"}, "has no option \"-x\"\nSee \"velk search --help\"."},
    {"TooManyArguments",
     {"unpack", "a.calibz", "b"},
     "velk: \"b\" is one argument too many for \"velk unpack\"\nSee \"velk unpack --help\".\n"},
    {"DisguisedArgument", {"unpack", "a.calibz", "[b"}, "velk: \"[b\" is one argument too many"},
    {"NoText", {"search"}, "TEXT (what to look for) or --id is required"},
    {"NoCatalogCommand",
     {"catalog"},
     "velk: \"velk catalog\" needs a command\nIts commands are build, sample and pack; see \"velk catalog --help\".\n"},
    {"NoOutput", {"catalog", "build", "a.csv"}, "--output is required"},
    {"NoSource", {"catalog", "build", "-o", "a.calib"}, "SOURCE is required"},
    {"BadKind", {"search", "a", "--kind", "things"}, "things not in {folders,items,all}"},
    {"BadType", {"search", "a", "--type", "things"}, "things not in {core,manufacturer,bonus,user}"},
    {"BadFormat", {"search", "a", "--format", "xml"}, "xml not in {table,json}"},
    {"NoTourFolder", {"tour", "-o", "x"}, "FOLDER or --sample is required"},
};

class WrongUsage : public VelkProgram, public testing::WithParamInterface<UsageCase>
{};

TEST_P(WrongUsage, IsExplained)
{
    const ProgramRun run = velk(GetParam().arguments);
    EXPECT_EQ(run.exitCode, test::exitCode::usage);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("velk: "));
    EXPECT_THAT(run.errors, HasSubstr(GetParam().errors));
}

INSTANTIATE_TEST_SUITE_P(CommandLines, WrongUsage, testing::ValuesIn(usageCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct NumberCase
{
    const char* name;
    std::vector<std::string> before;  // the number
    const char* range;
};

const NumberCase numberCases[] = {
    {"LimitOfASearch", {"search", "a", "--limit"}, "0 to 1000000000"},
    {"LimitOfChanges",
     {"manufacturer", "update", "--data-url", "http://x/", "--logo-url", "http://x/?a", "--limit"},
     "0 to 1000000000"},
    {"PortToServe", {"serve", "site", "--port"}, "0 to 65535"},
    {"IdThatIsShown", {"manufacturer", "show", "--"}, "-2147483648 to 2147483647"},
    {"IdThatIsEdited", {"manufacturer", "edit", "--new", "--"}, "-2147483648 to 2147483647"},
};

class WrongNumber : public VelkProgram, public testing::WithParamInterface<NumberCase>
{};

TEST_P(WrongNumber, IsRefusedWithTheRange)
{
    for (const std::string number : {"-99999999999999999999", "99999999999999999999", "4294967296000", "many", "", " 5",
                                     "+5", "5 ", "1e9", "1.5", "0x10", "5\x1B"}) {
        std::vector<std::string> arguments = GetParam().before;
        arguments.push_back(number);
        const ProgramRun run = velk(arguments);
        EXPECT_EQ(run.exitCode, test::exitCode::usage) << number;
        EXPECT_EQ(run.output, "");
        const std::string shown = number.ends_with('\x1B') ? "5\uFFFD" : number;
        EXPECT_THAT(run.errors,
                    HasSubstr("\"" + shown + "\" is not a whole number from " + GetParam().range + "\nSee \""));
    }
}

INSTANTIATE_TEST_SUITE_P(CommandLines, WrongNumber, testing::ValuesIn(numberCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(VelkProgram, TakesNumbersInDecimal)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    EXPECT_EQ(velk({"search", "chair", "-l", "a.calib", "--limit=-1"}).exitCode, test::exitCode::usage);
    const ProgramRun run = velk({"search", "chair", "-l", "a.calib", "--format", "json", "--limit", "002"});
    EXPECT_EQ(run.json()[QStringLiteral("hits")].toArray().size(), 2);
    EXPECT_EQ(velk({"search", "chair", "-l", "a.calib", "--limit", "1000000000"}).exitCode, 0);
    for (const char* id : {"-2147483648", "2147483647", "010"})
        EXPECT_THAT(velk({"manufacturer", "show", "--", id}).errors,
                    HasSubstr("there is no manufacturer " + std::to_string(std::stol(id))));
}

TEST_F(VelkProgram, NamesItselfInItsUsage)
{
    EXPECT_THAT(velk({"--help"}).output, HasSubstr("\nUsage: velk [OPTIONS] COMMAND\n"));
    EXPECT_THAT(velk({"search", "--help"}).output, HasSubstr("\nUsage: velk search [OPTIONS] [TEXT...]\n"));
    const std::string help = velk({"help", "filter", "show"}).output;
    EXPECT_THAT(help, HasSubstr("\nUsage: velk filter show [OPTIONS] NAME\n"));
    const std::string catalog = velk({"catalog", "--help"}).output;
    EXPECT_THAT(catalog, HasSubstr("\nUsage: velk catalog [OPTIONS] COMMAND\n"));
    EXPECT_THAT(catalog, HasSubstr("velk catalog COMMAND --help"));
}

TEST_F(VelkProgram, BuildsFurnitureLibraries)
{
    writeFurniture(U"t.sh3f");
    const ProgramRun run =
        velk({"catalog", "build", "t.sh3f", "-o", "t.calib", "--language", "de", "--type", "bonus", "--name", "Mein"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, StartsWith("t.calib: Mein (de), 2 items in 2 folders, 0 thumbnails, "));
    const VelkHost::Catalog catalog =
        VelkHost::readCatalog(folder() / U"t.calib", VelkHost::CatalogContent::Everything);
    EXPECT_EQ(catalog.kind, VelkHost::LibraryKind::Bonus);
    EXPECT_EQ(catalog.items[0].name, "T\u00FCr");
    EXPECT_THAT(velk({"search", "t\u00FCr", "-l", "t.calib", "--type", "bonus"}).output, HasSubstr("1 hit. "));
    EXPECT_THAT(velk({"search", "t\u00FCr", "-l", "t.calib", "--type", "core"}).output, HasSubstr("0 hits. "));
}

TEST_F(VelkProgram, BuildsFromCsv)
{
    test::writeFile(folder() / U"p.csv", "name,category\n\"24\"\" cabinet\",Kitchen\n");
    EXPECT_EQ(velk({"catalog", "build", "p.csv", "-o", "p.calib"}).exitCode, 0);
    EXPECT_THAT(velk({"search", "24\"", "-l", "p.calib"}).output, HasSubstr("24\" cabinet  p \u203A Kitchen\n"));
}

TEST_F(VelkProgram, KeepsTheOldCatalogWhenABuildFails)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    const std::string before = test::readFile(folder() / U"a.calib");
    test::writeFile(folder() / U"bad.csv", "name,id\nChair,x\nDesk,x\n");
    const std::vector<std::string> files = test::listFolder(folder());
    const ProgramRun run = velk({"catalog", "build", "bad.csv", "-o", "a.calib"});
    EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
    EXPECT_EQ(run.errors, "velk: bad.csv: line 3: the id \"x\" occurs twice; ids must differ\n");
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(test::readFile(folder() / U"a.calib"), before);
    EXPECT_EQ(test::listFolder(folder()), files);
}

TEST_F(VelkProgram, SaysWhyABuildFails)
{
    test::writeFile(folder() / U"text.sh3f", "no zip");
    writeFurniture(U"t.sh3f");
    const auto errors = [&](const std::vector<std::string>& arguments) {
        const ProgramRun run = velk(arguments);
        EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
        return run.errors;
    };
    EXPECT_EQ(errors({"catalog", "build", "none.sh3f", "-o", "x.calib"}), "velk: none.sh3f: does not exist\n");
    EXPECT_EQ(errors({"catalog", "build", ".", "-o", "x.calib"}),
              "velk: .: is a folder, not a file; give a furniture library (.sh3f) or a CSV file\n");
    EXPECT_THAT(errors({"catalog", "build", "text.sh3f", "-o", "x.calib"}),
                StartsWith("velk: text.sh3f: is not a sound zip archive"));
    EXPECT_THAT(errors({"catalog", "build", "t.sh3f", "-o", "x.calib", "--language", "xx"}),
                HasSubstr("has no names in \"xx\"; it has de"));
    EXPECT_THAT(errors({"catalog", "build", "t.sh3f", "-o", "none/x.calib"}),
                StartsWith(test::shown("velk: none/x.calib: cannot be written")));
    EXPECT_FALSE((folder() / U"x.calib").pathExists());
}

struct SourceCase
{
    const char* name;
    std::string bytes;
    const char* reason;
};

constexpr const char* notASource = "; a source is a furniture library (.sh3f) or a CSV file\n";

const SourceCase sourceCases[] = {
    {"image.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), "is an image"},
    {"image.jpg", "\xFF\xD8\xFF\xE0,\"x\"y", "is an image"},
    {"image.bmp", std::string("BM\x40\0\0\0", 6), "is an image"},
    {"program.bin",
     std::string("\x7F"
                 "ELF\2\1\1\0abcdefg",
                 15),
     "is not text"},
};

TEST_F(VelkProgram, SaysWhatIsNoSource)
{
    const auto errors = [&](const std::string& file) {
        const ProgramRun run = velk({"catalog", "build", file, "-o", "x.calib"});
        EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
        return run.errors;
    };
    for (const SourceCase& source : sourceCases) {
        test::writeFile(folder() / fileString(std::string(source.name)), source.bytes);
        EXPECT_EQ(errors(source.name), "velk: " + std::string(source.name) + ": " + source.reason + notASource);
    }
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    EXPECT_EQ(errors("a.calib"), std::string("velk: a.calib: is a catalog file, which needs no building") + notASource);
    test::writeZip(folder() / U"a.calibz", {{"a.calib", test::readFile(folder() / U"a.calib")}});
    EXPECT_EQ(errors("a.calibz"),
              std::string("velk: a.calibz: is a packed library, which \"velk unpack\" takes apart") + notASource);
    test::writeZip(folder() / U"z.zip", {{"a.txt", "text"}});
    EXPECT_THAT(errors("z.zip"), StartsWith("velk: z.zip: is not a furniture library: it holds no "));
    test::writeFile(folder() / U"empty.csv", "");
    EXPECT_THAT(errors("empty.csv"), StartsWith("velk: empty.csv: is empty; the first line names the columns"));
    EXPECT_FALSE((folder() / U"x.calib").pathExists());
}

TEST_F(VelkProgram, SaysThatASourceIsInUtf16)
{
    const std::string text = "name,category\nChair,Room\n";
    std::string low;
    std::string high;
    for (const char c : text) {
        low += {c, '\0'};
        high += {'\0', c};
    }
    for (const std::string& bytes : {low, high, "\xFF\xFE" + low, "\xFE\xFF" + high}) {
        test::writeFile(folder() / U"a.csv", bytes);
        EXPECT_EQ(velk({"catalog", "build", "a.csv", "-o", "x.calib"}).errors,
                  "velk: a.csv: is text in UTF-16; save it as UTF-8\n");
    }
    test::writeFile(folder() / U"a.csv", "BMX,name\n1,Chair\n");
    EXPECT_EQ(velk({"catalog", "build", "a.csv", "-o", "x.calib"}).exitCode, 0);
}

#ifdef __linux__
TEST_F(VelkProgram, SaysThatItsOutputWasNotWritten)
{
    VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib");
    const ProgramRun run = test::runProgram(folder(), {"search", "chair", "-l", "a.calib"}, "/dev/full");
    EXPECT_EQ(run.exitCode, test::exitCode::outputFailed);
    EXPECT_EQ(run.errors, "velk: the output cannot be written; is the disk full?\n");
}
#endif

TEST_F(VelkProgram, LetsNoLibrarySteerTheTerminal)
{
    VelkHost::Catalog catalog = test::smallCatalog();
    catalog.items[0].name = "chair\x1B]0;evil\x07";
    catalog.items[0].keywords = "a\nb";
    VelkHost::writeCatalog(catalog, folder() / U"a.calib");
    const ProgramRun run = velk({"search", "chair", "-l", "a.calib"});
    EXPECT_THAT(run.output, testing::Not(HasSubstr("\x1B")));
    EXPECT_THAT(run.output, HasSubstr("chair\uFFFD]0;evil\uFFFD"));
    EXPECT_THAT(velk({"search", "chair", "-l", "no\x1B[31m\n.calib"}).errors, testing::Not(HasSubstr("\x1B")));
}

}  // namespace
