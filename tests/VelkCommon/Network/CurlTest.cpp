#include <VelkCommon/Network/Curl.h>

#include "support/ScriptedServer.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

class CurlTest : public test::TestHost
{
protected:
    test::ScriptedServer server_;
    std::string body_;
};

TEST_F(CurlTest, BrowsesAText)
{
    server_.on("/text", test::Reply{.body = "Hello"});
    EXPECT_TRUE(Curl::get().browseURL(server_.url("/text?a=b"), {"X-One: 1"}, body_, true, 0));
    EXPECT_EQ(body_, "Hello");
    ASSERT_EQ(server_.requests().size(), 1U);
    EXPECT_EQ(server_.requests()[0].header("x-one"), "1");
}

}  // namespace
