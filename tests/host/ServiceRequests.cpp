#include "ServiceRequests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace test {
namespace {

constexpr const char* cache = "Cache-Control: public, no-cache, no-transform\n";
const std::string text = "Content-Type: text/plain; charset=utf-8\n";
const std::string bytes = "Content-Type: application/octet-stream\n";
const std::string ranges = "Accept-Ranges: bytes\n";

std::string tag(const std::string& hash)
{
    return "ETag: \"" + hash + "\"\n";
}

std::string length(std::size_t count)
{
    return "Content-Length: " + std::to_string(count) + "\n";
}

std::string part(std::size_t first, std::size_t last, std::size_t size)
{
    return "Content-Range: bytes " + std::to_string(first) + "-" + std::to_string(last) + "/" + std::to_string(size) +
           "\n";
}

const std::string coreTarget = "/catalog?v=1&library=M%C3%B6bel%202.calib&product=planner&version=12";
const std::string packedTarget = "/catalog?v=1&library=%E6%A4%85%E5%AD%90.calibz&product=pl%20an&version=12";

std::vector<ServiceRequest> namedRequests(const ServedSite& site)
{
    const std::string unknown = "This library is not part of the content service.\n";
    const std::string coreHeaders = ranges + cache + length(site.core.size()) + bytes + tag(site.coreTag);
    const std::string packedHeaders = ranges + cache + length(site.packed.size()) + bytes + tag(site.packedTag);
    return {
        {"ServiceAddress", "GET", "/", {}, 302, cache + std::string("Location: /catalog?v=1\n"), ""},
        {"Endpoint", "GET", "/catalog?v=1", {}, 200, cache + length(29) + text, "This is the content service.\n"},
        {"NoName",
         "GET",
         "/catalog?v=1&library=&product=p",
         {},
         200,
         cache + length(29) + text,
         "This is the content service.\n"},
        {"Core", "GET", coreTarget, {}, 200, coreHeaders, site.core},
        {"CoreCheck", "HEAD", coreTarget, {{"If-None-Match", "\"0123\""}}, 200, coreHeaders, ""},
        {"Packed", "GET", packedTarget, {}, 200, packedHeaders, site.packed},
        {"PackedCheck", "HEAD", packedTarget, {}, 200, packedHeaders, ""},
        {"EncodingInSmallLetters", "HEAD", "/catalog?v=1&library=m%c3%b6BEL%202.CALIB", {}, 200, coreHeaders, ""},
        {"NameOfTheArgumentInOtherLetters", "HEAD", "/catalog?LIBRARY=M%C3%B6bel%202.calib", {}, 200, coreHeaders, ""},
        {"FirstOfTwoNames", "HEAD", coreTarget + "&library=none.calib", {}, 200, coreHeaders, ""},
        {"SimilarArgument",
         "GET",
         "/catalog?xlibrary=a.calib",
         {},
         200,
         cache + length(29) + text,
         "This is the content service.\n"},
        {"Signs", "HEAD", "/catalog?v=1&library=~It's%20(a)%20$5%20deal;%2050=50,%20@home!.calib", {}, 200, "*", ""},
        {"TwoHundredCharacters", "HEAD", "/catalog?v=1&library=" + std::string(200, 'x') + ".calibz", {}, 200, "*", ""},
        {"Index", "GET", "/catalog?v=1&library=Standard_Core_Content_Index.txt", {}, 200, "*", site.index},
        {"Referenced", "HEAD", "/catalog?v=1&library=M%C3%B6bel%202.zip", {}, 200, "*", ""},
        {"Unknown", "GET", "/catalog?v=1&library=none.calib", {}, 404, cache + length(unknown.size()) + text, unknown},
        {"UnknownCheck", "HEAD", "/catalog?v=1&library=none.calib", {}, 404, cache + length(unknown.size()) + text, ""},
        {"PackedByItsInstalledName", "GET", "/catalog?v=1&library=%E6%A4%85%E5%AD%90.calib", {}, 404, "*", unknown},
        {"OtherEncoding", "GET", "/catalog?v=1&library=M%C3%B6bel+2.calib", {}, 404, "*", unknown},
        {"Withdrawn",
         "GET",
         "/catalog?v=1&library=Old%20%7B1%7D.calibz",
         {},
         403,
         "*",
         "Replaced by \"New\" for $5 \\ year, \xC3\xBC.\n"},
        {"WithdrawnCheck", "HEAD", "/catalog?v=1&library=Old%20%7B1%7D.calibz", {{"If-None-Match", "*"}}, 403, "*", ""},
        {"Manufacturers", "GET", "/manufacturers", {}, 200, "*", site.manufacturers},
        {"ManufacturersWithAQuery", "GET", "/manufacturers?v=1", {}, 200, "*", site.manufacturers},
        {"Logo", "GET", "/logo?v=1&logo-path=Gro%DFe%20T%FCr%201.png", {}, 200, "*", site.logo},
        {"LogoInUtf8",
         "GET",
         "/logo?v=1&logo-path=Gro%C3%9Fe%20T%C3%BCr%201.png",
         {},
         404,
         "*",
         "This logo is not part of the content service.\n"},
        {"NoLogo", "GET", "/logo", {}, 404, "*", "This logo is not part of the content service.\n"},
        {"OtherPath", "GET", "/files/x", {}, 404, cache + length(23) + text, "There is nothing here.\n"},
        {"Switch", "GET", "/current", {}, 404, "*", "There is nothing here.\n"},
        {"OutOfTheSite", "GET", "/catalog?v=1&library=../current", {}, 404, "*", unknown},
        {"WrongMethod", "DELETE", coreTarget, {}, 405, "*", "The content service answers GET and HEAD only.\n"},
    };
}

std::vector<ServiceRequest> conditionalRequests(const ServedSite& site)
{
    const std::string current = "\"" + site.coreTag + "\"";
    const std::string unchanged = cache + tag(site.coreTag);
    const std::string other = "\"" + site.packedTag + "\"";
    const auto check = [&](const char* name, const std::string& value, int status) {
        return ServiceRequest{
            name, "HEAD", coreTarget, {{"If-None-Match", value}}, status, status == 304 ? unchanged : "*", ""};
    };
    return {
        check("Current", current, 304),
        check("CurrentWeak", "W/" + current, 304),
        check("CurrentInAList", other + ", " + current + " ,\"x\"", 304),
        check("CurrentFirst", current + "," + other, 304),
        check("Any", "*", 304),
        check("Other", other, 200),
        check("Empty", "\"\"", 200),
        check("WithoutQuotes", site.coreTag, 200),
        check("Shortened", "\"" + site.coreTag.substr(1) + "\"", 200),
        check("Lengthened", "\"0" + site.coreTag + "\"", 200),
        {"CurrentGet", "GET", coreTarget, {{"If-None-Match", current}}, 304, unchanged, ""},
        {"OtherGet", "GET", coreTarget, {{"If-None-Match", other}}, 200, "*", site.core},
        {"ModifiedSince", "HEAD", coreTarget, {{"If-Modified-Since", "Fri, 01 Jan 2100 00:00:00 GMT"}}, 200, "*", ""},
        {"Compressed", "GET", coreTarget, {{"Accept-Encoding", "gzip, br"}}, 200, "*", site.core},
        {"CompressedIndex",
         "GET",
         "/catalog?v=1&library=Standard_Core_Content_Index.txt",
         {{"Accept-Encoding", "gzip"}},
         200,
         "*",
         site.index},
    };
}

std::vector<ServiceRequest> rangeRequests(const ServedSite& site)
{
    const std::string current = "\"" + site.coreTag + "\"";
    const std::size_t size = site.core.size();
    const auto range = [&](const char* name, const std::string& value, std::size_t first, std::size_t last) {
        return ServiceRequest{name,
                              "GET",
                              coreTarget,
                              {{"Range", value}},
                              206,
                              cache + length(last - first + 1) + part(first, last, size) + bytes + tag(site.coreTag),
                              site.core.substr(first, last - first + 1)};
    };
    const auto none = [&](const char* name, const std::string& value) {
        return ServiceRequest{
            name, "HEAD", coreTarget, {{"Range", value}}, 416, "Content-Range: bytes */" + std::to_string(size) + "\n",
            ""};
    };
    ServiceRequest resumed = range("SameVersion", "bytes=100-", 100, size - 1);
    resumed.headers.emplace_back("If-Range", current);
    return {
        range("Beginning", "bytes=0-0", 0, 0),
        range("Middle", "bytes=100-199", 100, 199),
        range("Rest", "bytes=1000-", 1'000, size - 1),
        range("End", "bytes=-10", size - 10, size - 1),
        range("BeyondTheEnd", "bytes=10-99999999", 10, size - 1),
        range("MoreThanAll", "bytes=-99999999", 0, size - 1),
        none("BehindTheEnd", "bytes=99999999-"),
        none("Nothing", "bytes=-0"),
        resumed,
        {"OtherVersion", "GET", coreTarget, {{"Range", "bytes=100-"}, {"If-Range", "\"x\""}}, 200, "*", site.core},
        {"Several", "GET", coreTarget, {{"Range", "bytes=0-1,5-6"}}, 200, "*", site.core},
        {"CheckOfAPart",
         "HEAD",
         coreTarget,
         {{"Range", "bytes=0-9"}},
         206,
         cache + length(10) + part(0, 9, size) + bytes + tag(site.coreTag),
         ""},
    };
}

}  // namespace

std::vector<ServiceRequest> serviceRequests(const ServedSite& site)
{
    std::vector<ServiceRequest> all = namedRequests(site);
    for (const auto& more : {conditionalRequests(site), rangeRequests(site)})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::string describeHeaders(const httplib::Response& response)
{
    // What an answer says about its own short text, or about ranges of it, is the server's affair.
    std::vector<const char*> names = {"Cache-Control", "Content-Range", "ETag", "Location"};
    if (response.status == 416)
        names = {"Content-Range"};
    else if (response.status != 302 && response.status != 304)
        names.insert(names.end(), {"Content-Length", "Content-Type"});
    if (response.has_header("ETag") && response.status == 200)
        names.emplace_back("Accept-Ranges");
    std::sort(names.begin(), names.end(), [](std::string_view left, std::string_view right) { return left < right; });
    std::string lines;
    for (const char* name : names)
        for (std::size_t i = 0; i < response.get_header_value_count(name); ++i)
            lines += std::string(name) + ": " + response.get_header_value(name, i) + "\n";
    return lines;
}

void expectAnswers(httplib::Client& client, const std::vector<ServiceRequest>& requests)
{
    client.set_keep_alive(true);
    client.set_url_encode(false);
    client.set_decompress(false);
    for (const ServiceRequest& row : requests) {
        SCOPED_TRACE(std::string(row.name) + ": " + row.method + " " + row.target);
        httplib::Request request;
        request.method = row.method;
        request.path = row.target;
        for (const auto& [name, value] : row.headers)
            request.set_header(name, value);
        const httplib::Result result = client.send(request);
        ASSERT_TRUE(result) << httplib::to_string(result.error());
        EXPECT_EQ(result->status, row.status);
        if (row.headersExpected != "*") {
            EXPECT_EQ(describeHeaders(*result), row.headersExpected);
        }
        if (row.method != "HEAD" && row.status != 302) {
            EXPECT_TRUE(result->body == row.body) << result->body.substr(0, 200);
        }
        EXPECT_FALSE(result->has_header("Content-Encoding"));
        EXPECT_FALSE(result->has_header("Last-Modified"));
    }
}

}  // namespace test
