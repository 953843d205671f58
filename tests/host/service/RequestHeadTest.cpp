#include "host/service/RequestHead.h"

#include <gmock/gmock.h>

using VelkHost::HeadLimits;
using VelkHost::readHead;
using VelkHost::Refusal;
using VelkHost::RequestHead;

namespace {

std::string request(const std::string& fields)
{
    return "GET /a HTTP/1.1\r\nHost: a\r\n" + fields + "\r\n";
}

/// The status of the refusal; 0 for a head that is read.
int refusal(const std::string& head, const HeadLimits& limits = {})
{
    const auto result = readHead(head, limits);
    const auto* const refused = std::get_if<Refusal>(&result);
    if (refused != nullptr) {
        EXPECT_FALSE(refused->text.empty());
    }
    return refused == nullptr ? 0 : refused->status;
}

TEST(RequestHead, IsRead)
{
    const auto result = readHead(
        "HEAD /a?b=%20c HTTP/1.1\r\nHost: a:1\r\nIf-None-Match:  \"x\", \t\"y\" \r\n"
        "if-none-match: z\r\nX:\r\nContent-Length: 12\r\n\r\n",
        {});
    const auto* const head = std::get_if<RequestHead>(&result);
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->method, "HEAD");
    EXPECT_EQ(head->target, "/a?b=%20c");
    EXPECT_EQ(head->field("IF-NONE-MATCH"), "\"x\", \t\"y\"");
    EXPECT_EQ(head->field("x"), "");
    EXPECT_EQ(head->field("y"), "");
    EXPECT_EQ(head->bodyBytes, 12U);
    EXPECT_TRUE(head->keepsConnection);
    EXPECT_FALSE(head->oldVersion);
}

TEST(RequestHead, TellsWhetherTheConnectionStays)
{
    const auto keeps = [](const std::string& version, const std::string& fields) {
        const auto result = readHead("GET / HTTP/" + version + "\r\nHost: a\r\n" + fields + "\r\n", {});
        return std::get<RequestHead>(result).keepsConnection;
    };
    EXPECT_TRUE(keeps("1.1", ""));
    EXPECT_FALSE(keeps("1.1", "Connection: close\r\n"));
    EXPECT_FALSE(keeps("1.1", "Connection: x, Close\r\n"));
    EXPECT_FALSE(keeps("1.0", ""));
    EXPECT_TRUE(keeps("1.0", "Connection: keep-alive\r\n"));
}

TEST(RequestHead, OfTheOldVersionNeedsNoHost)
{
    const auto result = readHead("GET / HTTP/1.0\r\n\r\n", {});
    ASSERT_TRUE(std::holds_alternative<RequestHead>(result));
    EXPECT_TRUE(std::get<RequestHead>(result).oldVersion);
}

struct Refused
{
    const char* name;
    std::string head;
    int status = 400;
};

class RefusedHead : public testing::TestWithParam<Refused>
{};

TEST_P(RefusedHead, GetsItsStatus)
{
    EXPECT_EQ(refusal(request("")), 0) << "the head without it";
    EXPECT_EQ(refusal(GetParam().head), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Ambiguous, RefusedHead,
    testing::Values(
        Refused{"LengthAndChunks", request("Content-Length: 5\r\nTransfer-Encoding: chunked\r\n")},
        Refused{"ChunksAndLength", request("Transfer-Encoding: chunked\r\nContent-Length: 5\r\n")},
        Refused{"Chunks", request("Transfer-Encoding: chunked\r\n")},
        Refused{"OtherEncoding", request("Transfer-Encoding: identity\r\n")},
        Refused{"ChunksBeforeAnotherEncoding", request("Transfer-Encoding: chunked, gzip\r\n")},
        Refused{"EncodingTwice", request("Transfer-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n")},
        Refused{"TwoLengths", request("Content-Length: 5\r\nContent-Length: 6\r\n")},
        Refused{"SameLengthTwice", request("Content-Length: 5\r\nContent-Length: 5\r\n")},
        Refused{"ListOfLengths", request("Content-Length: 5, 5\r\n")},
        Refused{"EmptyLength", request("Content-Length:\r\n")},
        Refused{"NegativeLength", request("Content-Length: -1\r\n")},
        Refused{"SignedLength", request("Content-Length: +5\r\n")},
        Refused{"HexadecimalLength", request("Content-Length: 0x5\r\n")},
        Refused{"LengthWithARest", request("Content-Length: 5x\r\n")},
        Refused{"LengthInTwoWords", request("Content-Length: 5 5\r\n")},
        Refused{"LengthBeyondAllNumbers", request("Content-Length: 18446744073709551616\r\n")},
        Refused{"FoldedByABlank", request("X: a\r\n b\r\n")}, Refused{"FoldedByATab", request("X: a\r\n\tb\r\n")},
        Refused{"FoldedFirstField", "GET / HTTP/1.1\r\n Host: a\r\n\r\n"},
        Refused{"BlankBeforeTheColon", request("Content-Length : 5\r\n")},
        Refused{"BlankInAName", request("X Y: a\r\n")}, Refused{"NoName", request(": a\r\n")},
        Refused{"NoColon", request("X\r\n")}, Refused{"LineFeedAlone", request("X: a\nContent-Length: 5\r\n")},
        Refused{"CarriageReturnAlone", request("X: a\rContent-Length: 5\r\n")},
        Refused{"Nul", request(std::string("X: a\0b\r\n", 8))}, Refused{"Escape", request("X: \x1B[2J\r\n")},
        Refused{"TwoHosts", request("Host: b\r\n")}, Refused{"NoHost", "GET / HTTP/1.1\r\n\r\n"},
        Refused{"NoTarget", "GET HTTP/1.1\r\nHost: a\r\n\r\n"},
        Refused{"BlankInTheTarget", "GET /a b HTTP/1.1\r\nHost: a\r\n\r\n"},
        Refused{"TwoBlanks", "GET  / HTTP/1.1\r\nHost: a\r\n\r\n"}, Refused{"NoVersion", "GET /\r\nHost: a\r\n\r\n"},
        Refused{"OddMethod", "G(T / HTTP/1.1\r\nHost: a\r\n\r\n"}, Refused{"NothingAtAll", "\r\n\r\n"},
        Refused{"AnswerForARequest", "HTTP/1.1 200 OK\r\nHost: a\r\n\r\n"}, Refused{"Tls", "\x16\x03\x01\r\n\r\n"},
        Refused{"LongBody", request("Content-Length: 65537\r\n"), 413},
        Refused{"LongestBody", request("Content-Length: 18446744073709551615\r\n"), 413},
        Refused{"Expectation", request("Content-Length: 5\r\nExpect: 100-continue\r\n"), 417},
        Refused{"OtherVersion", "GET / HTTP/2.0\r\nHost: a\r\n\r\n"},
        Refused{"EarlyVersion", "GET / HTTP/0.9\r\n\r\n"}),
    [](const auto& row) { return row.param.name; });

TEST(RequestHead, HasLimits)
{
    HeadLimits limits;
    limits.line = 40;
    limits.bytes = 200;
    limits.fields = 3;
    limits.bodyBytes = 10;
    const auto line = [](std::size_t bytes) { return "GET /" + std::string(bytes - 14, 'x') + " HTTP/1.1"; };
    EXPECT_EQ(refusal(line(40) + "\r\nHost: a\r\n\r\n", limits), 0);
    EXPECT_EQ(refusal(line(41) + "\r\nHost: a\r\n\r\n", limits), 414);
    EXPECT_EQ(refusal(request("A: b\r\nC: d\r\n"), limits), 0);
    EXPECT_EQ(refusal(request("A: b\r\nC: d\r\nE: f\r\n"), limits), 431);
    const std::size_t others = request("X: \r\n").size();
    EXPECT_EQ(refusal(request("X: " + std::string(200 - others, 'x') + "\r\n"), limits), 0);
    EXPECT_EQ(refusal(request("X: " + std::string(201 - others, 'x') + "\r\n"), limits), 431);
    EXPECT_EQ(refusal(request("Content-Length: 10\r\n"), limits), 0);
    EXPECT_EQ(refusal(request("Content-Length: 11\r\n"), limits), 413);
}

TEST(RequestHead, IsRefusedBeforeItEnds)
{
    HeadLimits limits;
    limits.line = 40;
    limits.bytes = 200;
    EXPECT_EQ(VelkHost::refusalOfBeginning(std::string(40, 'x'), limits).status, 0);
    EXPECT_EQ(VelkHost::refusalOfBeginning(std::string(41, 'x'), limits).status, 414);
    EXPECT_EQ(VelkHost::refusalOfBeginning("x\r\n" + std::string(197, 'x'), limits).status, 0);
    EXPECT_EQ(VelkHost::refusalOfBeginning("x\r\n" + std::string(198, 'x'), limits).status, 431);
}

TEST(RequestHead, EndsWithTheBlankLine)
{
    EXPECT_EQ(VelkHost::headLength("a\r\nb\r\n"), 0U);
    EXPECT_EQ(VelkHost::headLength("a\r\n\r\nrest"), 5U);
    for (std::size_t searched = 0; searched < 5; ++searched)
        EXPECT_EQ(VelkHost::headLength("a\r\n\r\nrest", searched), 5U) << searched;
}

TEST(StatusPhrase, IsTheUsualOne)
{
    EXPECT_EQ(VelkHost::statusPhrase(200), "OK");
    EXPECT_EQ(VelkHost::statusPhrase(404), "Not Found");
}

}  // namespace
