#include "host/support/ParserArguments.h"

#include <gmock/gmock.h>

#include <CLI/CLI.hpp>

using namespace VelkHost;
using testing::ElementsAre;

namespace {

TEST(ParserArguments, ComeFromTheBack)
{
    EXPECT_THAT(toParser({"search", "chair", "--limit", "3"}), ElementsAre("3", "--limit", "chair", "search"));
}

TEST(ParserArguments, PassTheParserAsTheyWereTyped)
{
    for (const std::string typed : {"", "plain", "[a,b]", "[", "%%", "%1", "a[b]", "\x01", "\x01[a]", "K\xC3\xBC"}) {
        std::string text;
        CLI::App parser;
        parser.add_option("TEXT", text);
        std::vector<std::string> disguised = toParser({typed});
        parser.parse(disguised);
        EXPECT_EQ(fromParser(text), typed);
    }
}

}  // namespace
