#include <VelkLibrary/CatalogDownloadProtocol.h>

#include <VelkCommon/Reporting/EnforcerThrow.h>

#include "VelkLibrary/Update/UpdateTest.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>

namespace {

using namespace LibraryCatalogUpdate;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

fileString path(const std::u32string& text)
{
    return text;
}

// ---- What an answer says -------------------------------------------------------------------------

CatalogRecord recordAfter(const std::string& headerLines, long status = 200)
{
    CatalogRecord record;
    record.remoteHash = "previous";
    record.contentLength = 7;
    applyHeaderResponse(record, "HTTP/1.1 200 OK\r\n" + headerLines + "\r\n", status);
    return record;
}

struct HeaderCase
{
    const char* name;
    std::string header;
    std::string remoteHash = "previous";
    std::uint32_t contentLength = 7;
};

void PrintTo(const HeaderCase& row, std::ostream* out)
{
    *out << row.header;
}

class HeaderLine : public testing::TestWithParam<HeaderCase>
{};

TEST_P(HeaderLine, IsReadAs)
{
    const CatalogRecord record = recordAfter(GetParam().header);
    EXPECT_EQ(record.remoteHash, GetParam().remoteHash);
    EXPECT_EQ(record.contentLength, GetParam().contentLength);
}

const HeaderCase tagCases[] = {
    {"Strong", "ETag: \"abc\"\r\n", "abc"},
    {"Weak", "ETag: W/\"abc\"\r\n", "abc"},
    {"Absent", "Server: x\r\n"},
    {"LowerCaseName", "etag: \"abc\"\r\n", "abc"},
    {"TheLastOfSeveral", "ETag: \"one\"\r\nETag: \"two\"\r\n", "two"},
    {"QuotesWithin", "ETag: \"a\"b\"c\"\r\n", "a\"b\"c"},
    {"Empty", "ETag: \"\"\r\n", ""},
    {"NoValue", "ETag:\r\n", ""},
    {"NoQuotes", "ETag: abc\r\n", "abc"},
    {"OneQuote", "ETag: \"abc\r\n", "\"abc"},
    {"WeakWithoutQuotes", "ETag: W/abc\r\n", "W/abc"},
    {"TextAfterTheQuotes", "ETag: \"abc\" def\r\n", "abc"},
    {"Controls", "ETag: \"a\x01\tb\x7F\"\r\n", "ab"},
    {"Colon", "ETag: \"a:b\"\r\n", "a:b"},
};

HeaderCase length(const char* name, const std::string& header, std::uint32_t contentLength = 7)
{
    return {name, header, "previous", contentLength};
}

const HeaderCase lengthCases[] = {
    length("Plain", "Content-Length: 123\r\n", 123),
    length("Zero", "Content-Length: 0\r\n", 0),
    length("OddCase", "CONTENT-length: 123\r\n", 123),
    length("TheLastOfSeveral", "Content-Length: 1\r\nContent-Length: 2\r\n", 2),
    length("Largest", "Content-Length: 4294967295\r\n", 4'294'967'295u),
    length("TooLarge", "Content-Length: 4294967296\r\n"),
    length("FarTooLarge", "Content-Length: 99999999999999999999999\r\n"),
    length("Negative", "Content-Length: -1\r\n"),
    length("Signed", "Content-Length: +1\r\n"),
    length("Text", "Content-Length: many\r\n"),
    length("Unit", "Content-Length: 12 KB\r\n"),
    length("Hexadecimal", "Content-Length: 0x10\r\n"),
    length("Empty", "Content-Length:\r\n"),
    length("Absent", "Server: x\r\n"),
};

const auto caseName = [](const auto& info) { return std::string(info.param.name); };
INSTANTIATE_TEST_SUITE_P(EntityTag, HeaderLine, testing::ValuesIn(tagCases), caseName);
INSTANTIATE_TEST_SUITE_P(ContentLength, HeaderLine, testing::ValuesIn(lengthCases), caseName);

TEST(HeaderResponse, KeepsTheStatus)
{
    EXPECT_EQ(recordAfter("", 304).status, 304);
    EXPECT_EQ(recordAfter("", 404).status, 404);
}

TEST(HeaderResponse, MayBeRubbish)
{
    CatalogRecord record;
    record.remoteHash = "previous";
    applyHeaderResponse(record, std::string("\0\xFF:::\n\n\n ETag", 13), 200);
    EXPECT_EQ(record.remoteHash, "previous");
}

TEST(CatalogRecord, NeedsADownloadWhenTheServiceHasAnotherVersion)
{
    CatalogRecord record;
    record.status = 200;
    EXPECT_FALSE(record.needsDownload());
    record.localHash = "a";
    EXPECT_TRUE(record.needsDownload());
    record.remoteHash = "A";
    EXPECT_TRUE(record.needsDownload());
    record.remoteHash = "a";
    EXPECT_FALSE(record.needsDownload());
    record.remoteHash = "b";
    for (const std::int32_t status : {0, 206, 304, 403, 404, 500}) {
        record.status = status;
        EXPECT_FALSE(record.needsDownload()) << status;
    }
}

TEST(SupportedCatalogFile, IsKnownByItsExtension)
{
    for (const char32_t* const name : {U"a.calib", U"a.calibz", U"a.zip", U"folder/a.b.calib"})
        EXPECT_TRUE(isSupportedCatalogFile(path(name)));
    for (const char32_t* const name : {U"", U"a", U".calib", U"a.CALIB", U"a.txt", U"a.calib ", U"a.calib.txt", U"a."})
        EXPECT_FALSE(isSupportedCatalogFile(path(name)));
}

// ---- Folders -------------------------------------------------------------------------------------

class CatalogFolders : public test::TestHost
{};

TEST_F(CatalogFolders, AreThoseOfTheHost)
{
    EXPECT_EQ(catalogFolder(CoreCatalogs) / U"x", folder() / U"core" / U"x");
    EXPECT_EQ(catalogFolder(ManufacturerCatalogs) / U"x", folder() / U"manufacturer" / U"x");
    EXPECT_EQ(catalogFolder(BonusCatalogs) / U"x", folder() / U"bonus" / U"x");
    for (const std::uint32_t kind : {0u, 3u, 5u, 8u, 0xFFFFFFFFu})
        EXPECT_TRUE(catalogFolder(kind).empty()) << kind;
}

TEST_F(CatalogFolders, ForDownloadsAreNamedByTheApplicationAndTheKind)
{
    EXPECT_EQ(downloadFolder(CoreCatalogs), folder() / U"temp" / U"velk.downloads.core");
    test::NamedApplication application("editor 2");
    Velk::HostServices host = services();
    host.application = &application;
    host.folders.bonusLibraryDatabase = folder() / U"Bonus v1.5";
    Velk::installHost(host);
    EXPECT_EQ(downloadFolder(CoreCatalogs), folder() / U"temp" / U"editor 2.downloads.core");
    EXPECT_EQ(downloadFolder(ManufacturerCatalogs), folder() / U"temp" / U"editor 2.downloads.manufacturer");
    EXPECT_EQ(downloadFolder(BonusCatalogs), folder() / U"temp" / U"editor 2.downloads.Bonus v1.5");
    EXPECT_TRUE(downloadFolder(3).empty());
}

TEST_F(CatalogFolders, ForDownloadsStayInTheTemporaryFolder)
{
    test::NamedApplication application("../../editor");
    Velk::HostServices host = services();
    host.application = &application;
    Velk::installHost(host);
    EXPECT_TRUE(downloadFolder(CoreCatalogs).empty());
}

TEST_F(CatalogFolders, ForDownloadsNeedAnApplication)
{
    gApp = nullptr;
    try {
        downloadFolder(CoreCatalogs);
        ADD_FAILURE() << "nothing thrown";
    } catch (const EnforcerException& error) {
        EXPECT_EQ(error.expression(), "!gApp");
        EXPECT_EQ(error.sourceFile(), "LibraryCatalogUpdater");
    }
}

TEST_F(CatalogFolders, TheIndexIsThatOfTheEdition)
{
    EXPECT_EQ(coreIndexFileName(), path(U"Standard_Core_Content_Index.txt"));
    Velk::HostServices host = services();
    host.editions.words[9] = "Naïve";
    host.editions.running = 9;
    Velk::installHost(host);
    EXPECT_EQ(coreIndexFileName(), path(U"Naïve_Core_Content_Index.txt"));
    host.editions.running = 10;
    Velk::installHost(host);
    EXPECT_EQ(coreIndexFileName(), path(U"Standard_Core_Content_Index.txt"));
}

// ---- Requests ------------------------------------------------------------------------------------

class CatalogRequests : public test::UpdateTest
{
protected:
    // The updater that was made last sets the address.
    void useService() { makeUpdater(false); }

    CatalogRecord record(std::uint32_t kind)
    {
        CatalogRecord result;
        result.kind = kind;
        result.localHash = "0123abcd";
        return result;
    }
};

TEST_F(CatalogRequests, NameTheCatalogByItsKind)
{
    useService();
    const std::string base = server.url("/api?key=k");
    EXPECT_EQ(buildCatalogRequest(path(U"a.calib"), record(1), "p", "v").first,
              base + "&library=a.calib&product=p&version=v");
    EXPECT_EQ(buildCatalogRequest(path(U"a.zip"), record(1), "p", "v").first,
              base + "&library=a.zip&product=p&version=v");
    EXPECT_EQ(buildCatalogRequest(path(U"a.calib"), record(2), "p", "v").first,
              base + "&library=a.calibz&product=p&version=v");
    EXPECT_EQ(buildCatalogRequest(path(U"a.b.calib"), record(4), "p", "v").first,
              base + "&library=a.b.calibz&product=p&version=v");
}

TEST_F(CatalogRequests, EncodeNothing)
{
    useService();
    EXPECT_EQ(buildCatalogRequest(path(U"Küche & 図 50%+#.calib"), record(1), "p&q", "1 %2").first,
              server.url("/api?key=k") + "&library=Küche & 図 50%+#.calib&product=p&q&version=1 %2");
}

TEST_F(CatalogRequests, CarryTheLocalHash)
{
    useService();
    EXPECT_THAT(buildCatalogRequest(path(U"a.calib"), record(1), "p", "v").second,
                ElementsAre("If-None-Match: \"0123abcd\""));
    EXPECT_THAT(buildCatalogRequest(path(U"a.calib"), {}, "p", "v").second, ElementsAre("If-None-Match: \"\""));
}

TEST_F(CatalogRequests, ResolveTheEndpointOnce)
{
    server.on("/start", test::Reply::redirect("/api?key=k"));
    address = server.url("/start");
    useService();
    EXPECT_EQ(resolveApiEndpoint(), server.url("/api?key=k"));
    EXPECT_EQ(resolveApiEndpoint(), server.url("/api?key=k"));
    EXPECT_THAT(server.requests("/start"), SizeIs(1));
    useService();
    EXPECT_EQ(resolveApiEndpoint(), server.url("/api?key=k"));
    EXPECT_THAT(server.requests("/start"), SizeIs(2)) << "a new updater asks again";
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(CatalogRequests, HaveNoAddressWithoutAnEndpoint)
{
    const test::RefusingPort nobody;
    address = nobody.url();
    useService();
    const auto [url, headers] = buildCatalogRequest(path(U"a.calib"), record(1), "p", "v");
    EXPECT_EQ(url, "");
    EXPECT_THAT(headers, SizeIs(1));
    EXPECT_EQ(resolveApiEndpoint(), "");
    EXPECT_THAT(log(), ElementsAre("Unable to determine api endpoint", "Unable to determine api endpoint"));
}

TEST_F(CatalogRequests, GoOnlyToTheWeb)
{
    test::writeFile(folder() / U"secret.txt", "secret");
    address = "file://" + (folder() / U"secret.txt").utf8();
    useService();
    EXPECT_EQ(resolveApiEndpoint(), "");
    server.on("/to-file", test::Reply::redirect(address));
    address = server.url("/to-file");
    useService();
    EXPECT_EQ(resolveApiEndpoint(), "");
}

TEST_F(CatalogRequests, FetchTheServicesMessage)
{
    useService();
    answer("a.calib", test::Reply{.status = 403, .body = "your licence has ended"});
    CatalogRecord refused = record(1);
    refused.status = 403;
    fetchServiceMessage(path(U"a.calib"), refused, "p", "v");
    EXPECT_EQ(refused.serviceMessage, "your licence has ended");
    const auto seen = requests("a.calib", "GET");
    ASSERT_THAT(seen, SizeIs(1));
    EXPECT_EQ(seen[0].header("If-None-Match"), "\"0123abcd\"");
}

}  // namespace
