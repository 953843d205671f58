#include <VelkCommon/Network/Curl.h>

#include "NetworkTest.h"

namespace {

using test::Reply;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// ---- Addresses -----------------------------------------------------------------------------------

struct AddressCase
{
    const char* name;
    const char* text;
    bool downloadable;
};

void PrintTo(const AddressCase& row, std::ostream* out)
{
    *out << row.text;
}

const AddressCase addressCases[] = {
    {"Http", "http://host/file.calibz", true},
    {"Https", "https://host/file.calibz", true},
    {"UpperCase", "HTTP://HOST/FILE", true},
    {"MixedCase", "hTTpS://host", true},
    {"HostAlone", "http://h", true},
    {"WithBlanks", "http://host/a b.calibz", true},
    {"Address6", "http://[::1]:80/", true},
    {"Empty", "", false},
    {"Ftp", "ftp://host/file", false},
    {"File", "file:///etc/passwd", false},
    {"PosixPath", "/home/ann/http://host", false},
    {"WindowsPath", "C:\\http\\file.calibz", false},
    {"ShareFolder", "\\\\server\\share", false},
    {"RelativePath", "http/host/file", false},
    {"SchemeAlone", "http:", false},
    {"NoHost", "http://", false},
    {"NoHostButPath", "http:///file", false},
    {"NoHostButQuery", "https://?a=b", false},
    {"OneSlash", "http:/host", false},
    {"LongerScheme", "httpss://host", false},
    {"ShorterScheme", "htt://host", false},
    {"LeadingBlank", " http://host", false},
};

class Downloadable : public testing::TestWithParam<AddressCase>
{};

TEST_P(Downloadable, IsAnAddressOfTheWeb)
{
    EXPECT_EQ(Curl::downloadable(GetParam().text), GetParam().downloadable);
}

INSTANTIATE_TEST_SUITE_P(Addresses, Downloadable, testing::ValuesIn(addressCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Requests ------------------------------------------------------------------------------------

using CurlTest = test::NetworkTest;

TEST_F(CurlTest, IsOneInstance)
{
    EXPECT_EQ(&Curl::get(), &Curl::get());
}

TEST_F(CurlTest, SendsTheAddressInALegalForm)
{
    const char* const name =
        "/a?library=K\xC3\xBC"
        "che 2.calib&product=A+B&version=1%2C5&x=<{|}>";
    EXPECT_FALSE(browse(server_.url(name)));
    ASSERT_EQ(server_.requests().size(), 1U);
    EXPECT_EQ(server_.requests()[0].target,
              "/a?library=K%C3%BCche%202.calib&product=A+B&version=1%2C5&x=%3C%7B%7C%7D%3E");
}

TEST_F(CurlTest, SendsTheHeaderLines)
{
    const std::vector<std::string> lines = {"If-None-Match: \"abc\"", "X-Two: a: b", "X-Tab: a\tb"};
    static_cast<void>(browse(server_.url("/browse"), lines));
    static_cast<void>(askHeader(server_.url("/header"), lines));
    static_cast<void>(download(server_.url("/download"), lines));
    ASSERT_EQ(server_.requests().size(), 3U);
    for (const test::SeenRequest& request : server_.requests()) {
        EXPECT_EQ(request.method, request.target == "/header" ? "HEAD" : "GET");
        EXPECT_EQ(request.header("If-None-Match"), "\"abc\"");
        EXPECT_EQ(request.header("X-Two"), "a: b");
        EXPECT_EQ(request.header("X-Tab"), "a\tb");
        EXPECT_FALSE(request.hasHeader("Cookie"));
        EXPECT_FALSE(request.hasHeader("Authorization"));
    }
}

TEST_F(CurlTest, AsksForCompressionOfTextsOnly)
{
    static_cast<void>(browse(server_.url("/browse")));
    static_cast<void>(askHeader(server_.url("/header")));
    static_cast<void>(download(server_.url("/download")));
    std::string reason;
    EXPECT_FALSE(Curl::get().download_to_location(server_.url("/short"), target(), reason));
    EXPECT_TRUE(Curl::get().download(server_.url("/temporary")).empty());
    for (const test::SeenRequest& request : server_.requests())
        EXPECT_EQ(request.header("Accept-Encoding"), request.target == "/browse" ? "gzip" : "") << request.target;
    EXPECT_EQ(server_.requests().size(), 5U);
}

TEST_F(CurlTest, RefusesControlCharacters)
{
    for (const std::string& bad :
         {std::string("\r\nX-Evil: 1"), std::string("\n"), std::string("\r"), std::string("a\0b", 3),
          std::string("\x01"), std::string("\x1F"), std::string("\x7F")}) {
        EXPECT_FALSE(browse(server_.url("/a?version=" + bad)));
        EXPECT_EQ(body_, "");
        EXPECT_FALSE(askHeader(server_.url("/a"), {"If-None-Match: \"" + bad + "\""}));
        EXPECT_EQ(header_, "");
        EXPECT_EQ(status_, 0);
        const test::Outcome outcome = download(server_.url("/a"), {"X-Good: 1", "X-Bad: " + bad});
        EXPECT_FALSE(outcome.succeeded);
        EXPECT_NE(outcome.code, 0U);
        EXPECT_THAT(outcome.reason, testing::HasSubstr("control character"));
    }
    EXPECT_THAT(server_.requests(), IsEmpty());
    EXPECT_EQ(server_.connections(), 0U);
}

TEST_F(CurlTest, RefusesOtherAddresses)
{
    test::writeFile(folder() / U"secret", "secret");
    for (const std::string& address :
         {std::string(), std::string("text"), "file://" + (folder() / U"secret").utf8(),
          std::string("ftp://127.0.0.1/a"), std::string("http://"), std::string("http://127.0.0.1:99999/")}) {
        EXPECT_FALSE(browse(address));
        EXPECT_FALSE(askHeader(address));
        EXPECT_TRUE(Curl::get().download(address).empty());
        const test::Outcome outcome = download(address);
        EXPECT_FALSE(outcome.succeeded) << address;
        EXPECT_NE(outcome.reason, "");
        EXPECT_NE(outcome.code, 0U);
    }
    EXPECT_THAT(strayFiles(), ElementsAre("secret"));
}

// ---- Texts ---------------------------------------------------------------------------------------

TEST_F(CurlTest, BrowsesAText)
{
    server_.on("/text", Reply{.body = "Hello\r\nthere"});
    EXPECT_TRUE(browse(server_.url("/text")));
    EXPECT_EQ(body_, "Hello\r\nthere");
    EXPECT_TRUE(Curl::get().browseURL(server_.url("/text"), {}, body_, false, 7));
    EXPECT_EQ(body_, "Hello\r\nthere") << "replaced, not appended";
}

TEST_F(CurlTest, BrowsesWhateverTheWayOfTheBody)
{
    server_.on("/empty", Reply{});
    EXPECT_TRUE(browse(server_.url("/empty")));
    EXPECT_EQ(body_, "");
    server_.on("/chunked", Reply{.body = std::string(10000, 'x'), .chunked = true, .block = 7});
    EXPECT_TRUE(browse(server_.url("/chunked")));
    EXPECT_EQ(body_, std::string(10000, 'x'));
    server_.on("/closed", Reply{.body = "until the end", .withLength = false});
    EXPECT_TRUE(browse(server_.url("/closed")));
    EXPECT_EQ(body_, "until the end");
    server_.on("/none", Reply{.status = 204, .withLength = false});
    EXPECT_TRUE(browse(server_.url("/none")));
    EXPECT_EQ(body_, "");
}

TEST_F(CurlTest, UnpacksACompressedText)
{
    // "hello hello hello hello\n" by gzip.
    const std::string packed(
        "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\x48\xcd\xc9\xc9\x57\xc8\x40\x27\xb9\x00\x00\x88\x59\x0b\x18\x00"
        "\x00\x00",
        29);
    server_.on("/text", Reply{.headers = {{"Content-Encoding", "gzip"}}, .body = packed});
    EXPECT_TRUE(browse(server_.url("/text")));
    EXPECT_EQ(body_, "hello hello hello hello\n");
}

TEST_F(CurlTest, GivesTheBodyOfAnErrorTooButIsFalse)
{
    for (const int status : {400, 401, 403, 404, 410, 500, 503}) {
        server_.on("/text", Reply{.status = status, .body = "No licence for this."});
        EXPECT_FALSE(browse(server_.url("/text"))) << status;
        EXPECT_EQ(body_, "No licence for this.") << status;
    }
    server_.on("/text", Reply::file("x", "tag"));
    EXPECT_FALSE(browse(server_.url("/text"), {"If-None-Match: \"tag\""}));
    EXPECT_EQ(body_, "");
}

TEST_F(CurlTest, GivesNoPartOfAText)
{
    server_.on("/cut", Reply{.body = "All of it", .cutAfter = 4});
    EXPECT_FALSE(browse(server_.url("/cut")));
    EXPECT_EQ(body_, "");
}

// ---- Headers -------------------------------------------------------------------------------------

TEST_F(CurlTest, AsksForTheHeaderAlone)
{
    server_.on("/a.calib", Reply::file("0123456789", "abc"));
    EXPECT_TRUE(askHeader(server_.url("/a.calib"), {"If-None-Match: \"other\""}));
    EXPECT_EQ(header_, "HTTP/1.1 200 Scripted\r\nETag: \"abc\"\r\nContent-Length: 10\r\n\r\n");
    EXPECT_EQ(status_, 200);
    EXPECT_EQ(server_.requests().at(0).method, "HEAD");
}

TEST_F(CurlTest, TakesAnyStatusForAnAnswer)
{
    for (const int status : {200, 204, 302, 304, 400, 401, 403, 404, 405, 410, 429, 500, 503}) {
        server_.on("/a", Reply{.status = status, .headers = {{"X", "y"}}});
        EXPECT_TRUE(askHeader(server_.url("/a"))) << status;
        EXPECT_EQ(status_, status);
        EXPECT_THAT(header_, StartsWith("HTTP/1.1 " + std::to_string(status)));
    }
    server_.on("/a", Reply::file("x", "tag"));
    EXPECT_TRUE(askHeader(server_.url("/a"), {"If-None-Match: \"tag\""}));
    EXPECT_EQ(status_, 304);
}

TEST_F(CurlTest, GivesTheLastBlockOnly)
{
    server_.on("/start", [](const test::SeenRequest&) {
        Reply reply = Reply::redirect("/end");
        reply.headers.emplace_back("ETag", "\"of the redirect\"");
        return reply;
    });
    server_.on("/end", Reply::file("body", "right"));
    EXPECT_TRUE(askHeader(server_.url("/start")));
    EXPECT_EQ(header_, "HTTP/1.1 200 Scripted\r\nETag: \"right\"\r\nContent-Length: 4\r\n\r\n");
    EXPECT_EQ(status_, 200);

    server_.on("/interim", Reply{.raw = "HTTP/1.1 103 Early Hints\r\nETag: \"early\"\r\n\r\n"
                                        "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n"});
    EXPECT_TRUE(askHeader(server_.url("/interim")));
    EXPECT_EQ(header_, "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n");
}

TEST_F(CurlTest, KeepsALineThatLooksLikeAStatusLine)
{
    server_.on("/a", Reply{.headers = {{"ETag", "\"a\""}, {"HTTP/1.1 500 Evil", "x"}}});
    EXPECT_TRUE(askHeader(server_.url("/a")));
    EXPECT_THAT(header_, testing::HasSubstr("ETag: \"a\""));
    EXPECT_EQ(status_, 200);
}

TEST_F(CurlTest, GivesNothingWithoutACompleteHeader)
{
    for (const char* const raw : {"", "HTTP/1.1 200 OK\r\nETag: \"a\"\r\n", "garbage\r\n\r\n", "\r\n\r\n"}) {
        server_.on("/a", Reply{.raw = raw, .ending = Reply::Ending::close});
        EXPECT_FALSE(askHeader(server_.url("/a"))) << raw;
        EXPECT_EQ(header_, "");
        EXPECT_EQ(status_, 0);
    }
    server_.on("/a", Reply::resetAtOnce());
    EXPECT_FALSE(askHeader(server_.url("/a")));
    EXPECT_EQ(header_, "");
}

}  // namespace
