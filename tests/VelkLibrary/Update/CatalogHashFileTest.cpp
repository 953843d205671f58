#include <VelkLibrary/Update/CatalogHashFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>

#include "support/OpenModes.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace {

using namespace LibraryCatalogUpdate;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

fileString path(const std::u32string& text)
{
    return text;
}

CatalogRecord record(std::uint32_t kind, const std::string& localHash)
{
    CatalogRecord result;
    result.kind = kind;
    result.localHash = localHash;
    return result;
}

class CatalogHashFile : public test::TestHost
{
protected:
    fileString core() const { return folder() / U"core"; }
    fileString bonus() const { return folder() / U"bonus"; }
    fileString hashFile() const { return core() / U"catalog_hash.txt"; }

    void install(const std::u32string& name) { test::writeFile(core() / name, "database"); }

    CatalogTable read(const std::string& text)
    {
        test::writeFile(hashFile(), text);
        CatalogTable catalogs;
        readCatalogHashFile(hashFile(), catalogs, CoreCatalogs);
        return catalogs;
    }

    // The text without the carriage returns that text mode adds.
    std::string written() const
    {
        std::string text = test::readFile(hashFile());
        std::erase(text, '\r');
        return text;
    }
};

TEST_F(CatalogHashFile, LiesInTheFolderOfItsKind)
{
    EXPECT_EQ(catalogHashFile(CoreCatalogs), hashFile());
    EXPECT_EQ(catalogHashFile(BonusCatalogs), bonus() / U"catalog_hash.txt");
    EXPECT_TRUE(catalogHashFile(0).empty());
}

TEST_F(CatalogHashFile, HoldsALinePerCatalogOfTheKindInKeyOrder)
{
    CatalogTable catalogs;
    catalogs[path(U"b.calib")] = record(CoreCatalogs, "22");
    catalogs[path(U"a.calib")] = record(CoreCatalogs, "11");
    catalogs[path(U"c.calib")] = record(BonusCatalogs, "33");
    catalogs[path(U"B.calib")] = record(CoreCatalogs, "44");
    writeCatalogHashFile(catalogs, CoreCatalogs);
    EXPECT_EQ(written(), "B.calib:44\na.calib:11\nb.calib:22\n");
    EXPECT_FALSE((bonus() / U"catalog_hash.txt").pathExists());
}

TEST_F(CatalogHashFile, HasTheRemoteHashOfWhatWasUpdated)
{
    CatalogTable catalogs;
    CatalogRecord updated = record(CoreCatalogs, "old");
    updated.remoteHash = "new";
    updated.updated = true;
    catalogs[path(U"updated.calib")] = updated;
    updated.updated = false;
    catalogs[path(U"failed.calib")] = updated;
    writeCatalogHashFile(catalogs, CoreCatalogs);
    EXPECT_EQ(written(), "failed.calib:old\nupdated.calib:new\n");
}

TEST_F(CatalogHashFile, LeavesOutWhatHasNoHash)
{
    CatalogTable catalogs;
    catalogs[path(U"missing.calib")] = record(CoreCatalogs, "");
    CatalogRecord updated = record(CoreCatalogs, "old");
    updated.updated = true;
    catalogs[path(U"untagged.calib")] = updated;
    writeCatalogHashFile(catalogs, CoreCatalogs);
    EXPECT_EQ(written(), "");
}

TEST_F(CatalogHashFile, ReplacesWhatWasThere)
{
    test::writeFile(hashFile(), std::string(10'000, 'x'));
    writeCatalogHashFile({}, CoreCatalogs);
    EXPECT_EQ(written(), "");
}

TEST_F(CatalogHashFile, StaysWellFormedWhateverTheServiceSends)
{
    CatalogTable catalogs;
    catalogs[path(U"a.calib")] = record(CoreCatalogs, "1\nb.calib:2");
    catalogs[path(U"c\nd.calib")] = record(CoreCatalogs, "3");
    catalogs[path(U"e.calib")] = record(CoreCatalogs, "5");
    writeCatalogHashFile(catalogs, CoreCatalogs);
    EXPECT_EQ(written(), "e.calib:5\n");
}

TEST_F(CatalogHashFile, IsNotWrittenWhereThereIsNoFolder)
{
    std::filesystem::remove_all(core().utf8());
    CatalogTable catalogs;
    catalogs[path(U"a.calib")] = record(CoreCatalogs, "11");
    writeCatalogHashFile(catalogs, CoreCatalogs);
    EXPECT_FALSE(core().pathExists());
}

TEST_F(CatalogHashFile, IsNotWrittenForAnUnknownKind)
{
    CatalogTable catalogs;
    catalogs[path(U"a.calib")] = record(3, "11");
    writeCatalogHashFile(catalogs, 3);
    EXPECT_FALSE(path(U"catalog_hash.txt").pathExists());
}

TEST_F(CatalogHashFile, StaysWhileSomebodyElseWritesIt)
{
    LockingFStream other(hashFile(), test::writeText);
    other << "theirs\n";
    CatalogTable catalogs;
    catalogs[path(U"a.calib")] = record(CoreCatalogs, "11");
    writeCatalogHashFile(catalogs, CoreCatalogs);
    other.close();
    EXPECT_EQ(written(), "theirs\n");
}

TEST_F(CatalogHashFile, ComesBackAsItWasWritten)
{
    CatalogTable catalogs;
    for (const char32_t* const name : {U"a.calib", U"Küche 2.calib", U"図書館.calib", U"A & B # C % D + E.calib"}) {
        install(name);
        catalogs[path(name)] = record(CoreCatalogs, "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    }
    writeCatalogHashFile(catalogs, CoreCatalogs);
    CatalogTable again;
    readCatalogHashFile(hashFile(), again, CoreCatalogs);
    ASSERT_EQ(again.size(), catalogs.size());
    for (const auto& [name, entry] : catalogs) {
        EXPECT_EQ(again[name].localHash, entry.localHash) << name;
        EXPECT_EQ(again[name].kind, CoreCatalogs) << name;
        EXPECT_FALSE(again[name].updated) << name;
    }
}

TEST_F(CatalogHashFile, LinesOfCatalogsThatAreNotThereAreIgnored)
{
    install(U"here.calib");
    const CatalogTable catalogs = read("here.calib:1\ngone.calib:2\n");
    ASSERT_EQ(catalogs.size(), 1u);
    EXPECT_EQ(catalogs.begin()->first, path(U"here.calib"));
}

TEST_F(CatalogHashFile, ALineWithTwoColonsIsIgnored)
{
    install(U"a.calib");
    EXPECT_THAT(read("a.calib:1:2\n"), IsEmpty());
    EXPECT_THAT(read("a.calib\n"), IsEmpty());
}

TEST_F(CatalogHashFile, LinesMayEndAsOnWindowsAndTheLastOneNotAtAll)
{
    install(U"a.calib");
    install(U"b.calib");
    CatalogTable catalogs = read("a.calib:11\r\nb.calib:22");
    EXPECT_EQ(catalogs[path(U"a.calib")].localHash, "11");
    EXPECT_EQ(catalogs[path(U"b.calib")].localHash, "22");
}

TEST_F(CatalogHashFile, UpdatesARecordThatIsInTheTable)
{
    install(U"a.calib");
    CatalogTable catalogs;
    catalogs[path(U"a.calib")] = record(BonusCatalogs, "old");
    catalogs[path(U"a.calib")].contentLength = 5;
    test::writeFile(hashFile(), "a.calib:new\n");
    readCatalogHashFile(hashFile(), catalogs, CoreCatalogs);
    EXPECT_EQ(catalogs[path(U"a.calib")].localHash, "new");
    EXPECT_EQ(catalogs[path(U"a.calib")].kind, CoreCatalogs);
    EXPECT_EQ(catalogs[path(U"a.calib")].contentLength, 5u);
}

TEST_F(CatalogHashFile, NamesWithAFolderAreIgnored)
{
    install(U"a.calib");
    test::writeFile(bonus() / U"b.calib", "elsewhere");
    const std::string absolute = (core() / U"a.calib").utf8();
    EXPECT_THAT(read("../bonus/b.calib:1\n./a.calib:2\n" + absolute + ":3\n..:4\n.:5\n:6\n"), IsEmpty());
}

TEST_F(CatalogHashFile, HashesWithControlsAreIgnored)
{
    install(U"a.calib");
    EXPECT_THAT(read("a.calib:1\x01"
                     "2\n"),
                IsEmpty());
    EXPECT_THAT(read("a.calib:1\r\r\n"), IsEmpty());
}

TEST_F(CatalogHashFile, WhatIsNotAHashFileReadsAsEmpty)
{
    install(U"a.calib");
    CatalogTable catalogs;
    readCatalogHashFile(core() / U"missing.txt", catalogs, CoreCatalogs);
    readCatalogHashFile(core(), catalogs, CoreCatalogs);
    readCatalogHashFile({}, catalogs, CoreCatalogs);
    EXPECT_THAT(catalogs, IsEmpty());
    EXPECT_THAT(read(std::string(100'000, ':')), IsEmpty());
    EXPECT_THAT(read(std::string(1000, '\0')), IsEmpty());
}

TEST_F(CatalogHashFile, OneOfAbsurdSizeReadsAsEmpty)
{
    install(U"a.calib");
    test::writeFile(hashFile(), "a.calib:1\n");
    std::filesystem::resize_file(hashFile().utf8(), (16u << 20) + 1);
    CatalogTable catalogs;
    readCatalogHashFile(hashFile(), catalogs, CoreCatalogs);
    EXPECT_THAT(catalogs, IsEmpty());
}

TEST(CatalogTexts, AnIndexIsItsLinesWithNamesOfCatalogs)
{
    EXPECT_THAT(detail::parseCoreIndex("a.calib\nb.calibz\r\nc.zip\n\nd.txt\ne\n.calib\nf.CALIB\n g.calib"),
                ElementsAre(path(U"a.calib"), path(U"b.calibz"), path(U"c.zip"), path(U" g.calib")));
    EXPECT_THAT(detail::parseCoreIndex(""), IsEmpty());
    EXPECT_THAT(detail::parseCoreIndex("\n\r\n"), IsEmpty());
    EXPECT_THAT(detail::parseCoreIndex("a\r.cal\rib\r"), ElementsAre(path(U"a.calib")));
}

TEST(CatalogTexts, AnIndexCannotLeaveItsFolder)
{
    EXPECT_THAT(detail::parseCoreIndex("../a.calib\n/a.calib\nb/a.calib\nC:\\a.calib\n..\\a.zip\nCON.calib\n"
                                       "a\tb.calib\nhttp://host/a.zip\n<a href=\"a.zip\n"),
                IsEmpty());
}

TEST(CatalogTexts, AHashLineIsANameAndAHash)
{
    EXPECT_THAT(*detail::parseHashLine("a b.calib:0123"), Pair("a b.calib", "0123"));
    EXPECT_THAT(*detail::parseHashLine("a.calib:0123\r"), Pair("a.calib", "0123"));
    EXPECT_THAT(*detail::parseHashLine("a.calib:"), Pair("a.calib", ""));
    EXPECT_FALSE(detail::parseHashLine(""));
    EXPECT_FALSE(detail::parseHashLine(":"));
    EXPECT_FALSE(detail::parseHashLine("a.calib"));
    EXPECT_FALSE(detail::parseHashLine("a.calib:1:2"));
}

}  // namespace
