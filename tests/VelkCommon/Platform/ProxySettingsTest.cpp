#include <VelkCommon/Platform/ProxySettings.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Velk::Platform::proxyFor;

const std::string http = "http://content.example:80";
const std::string https = "https://content.example:443";

TEST(ProxySettingsTest, FindsTheProxyForAScheme)
{
    const struct
    {
        const char* proxies;
        const char* forHttp;
        const char* forHttps;
    } cases[] = {
        {"", "", ""},
        {"a:8080", "http://a:8080", "http://a:8080"},
        {"http=a:80;https=b:81", "http://a:80", "http://b:81"},
        {"https=b:81", "", "http://b:81"},
        {"HTTP=Proxy.Example:80  HTTPS=b:81", "http://proxy.example:80", "http://b:81"},
        {"http=http://a:80;https=http://b:81/", "http://a:80", "http://b:81"},
        {"http://a:8080", "http://a:8080", "http://a:8080"},
        {"a", "http://a:80", "http://a:80"},
        {"a:1;b:2", "http://a:1", "http://a:1"},
        {"ftp=f:21;a:1", "http://a:1", "http://a:1"},
        {" ;\t a:1 ;; ", "http://a:1", "http://a:1"},
        {"[2001:db8::1]:8080", "http://[2001:db8::1]:8080", "http://[2001:db8::1]:8080"},
        {"[2001:db8::1]", "http://[2001:db8::1]:80", "http://[2001:db8::1]:80"},
        {"10.0.0.1:3128", "http://10.0.0.1:3128", "http://10.0.0.1:3128"},
        {"socks=s:1080", "socks4://s:1080", "socks4://s:1080"},
        {"socks=s", "socks4://s:1080", "socks4://s:1080"},
        {"socks=s:1;http=a:80", "http://a:80", "socks4://s:1"},
    };
    for (const auto& [proxies, forHttp, forHttps] : cases) {
        EXPECT_EQ(proxyFor({proxies, ""}, http), forHttp) << proxies;
        EXPECT_EQ(proxyFor({proxies, ""}, https), forHttps) << proxies;
    }
}

TEST(ProxySettingsTest, PassesOverWhatIsNoProxy)
{
    const std::string bad[] = {
        "user:password@a:80",
        "a:80@b:81",
        "a:",
        "a:0",
        "a:65536",
        "a:99999999999999999999",
        "a:80x",
        "a:-1",
        ":80",
        "http=",
        "http=:80",
        "https://a:80",
        "file://a",
        "socks5://a",
        "a/b:80",
        "a\\b:80",
        "[::1",
        "[::1]x:80",
        "[]:80",
        "::1:80",
        "a%b:80",
        "\x80:80",
        std::string("\0", 1),
        "http=http=a:80",
        std::string(300, 'a') + ":80",
    };
    for (const std::string& proxy : bad) {
        EXPECT_EQ(proxyFor({proxy, ""}, http), "") << proxy;
        EXPECT_EQ(proxyFor({proxy + ";good:1", ""}, http), "http://good:1") << proxy;
    }
}

TEST(ProxySettingsTest, SparesTheProxyForTheServersOfTheList)
{
    const struct
    {
        const char* bypass;
        const char* server;
        bool direct;
    } cases[] = {
        {"", "http://content.example:80", false},
        {"content.example", "http://content.example:80", true},
        {"CONTENT.Example", "http://content.example:80", true},
        {"content.example", "http://Content.EXAMPLE:80", true},
        {"content", "http://content.example:80", false},
        {"example", "http://content.example:80", false},
        {"*.example", "http://content.example:80", true},
        {"*.example", "http://example:80", false},
        {"*example", "http://example:80", true},
        {"content.*", "http://content.example:80", true},
        {"*nt*ex*e", "http://content.example:80", true},
        {"*nt*ex*f", "http://content.example:80", false},
        {"*", "http://content.example:80", true},
        {"**", "http://content.example:80", true},
        {"10.*", "http://10.1.2.3:80", true},
        {"10.*", "http://110.1.2.3:80", false},
        {"a;b content.example\tc", "http://content.example:80", true},
        {"content.example:80", "http://content.example:80", true},
        {"content.example:81", "http://content.example:80", false},
        {"content.example:*", "http://content.example:80", true},
        {"https://content.example", "http://content.example:80", false},
        {"https://content.example", "https://content.example:443", true},
        {"[2001:db8::*]", "http://[2001:db8::1]:80", true},
        {"<local>", "http://intranet:80", true},
        {"<local>", "http://content.example:80", false},
        {"<local>", "http://[2001:db8::1]:80", false},
        {"<LOCAL>", "http://intranet:80", true},
        {"<other>", "http://content.example:80", false},
        {"", "http://localhost:80", true},
        {"", "http://127.0.0.1:80", true},
        {"", "http://127.1.2.3:80", true},
        {"", "http://127.example:80", false},
        {"", "http://[::1]:80", true},
        {"<-loopback>", "http://127.0.0.1:80", false},
        {"<-loopback>;<local>", "http://localhost:80", true},
    };
    for (const auto& [bypass, server, direct] : cases)
        EXPECT_EQ(proxyFor({"a:80", bypass}, server), direct ? "" : "http://a:80") << bypass << ' ' << server;
}

TEST(ProxySettingsTest, KnowsNoProxyForWhatIsNoServer)
{
    for (const char* const server :
         {"", "content.example:80", "http://", "http://:80", "http://a b:80", "http://u@a:80"})
        EXPECT_EQ(proxyFor({"a:80", ""}, server), "") << server;
}

TEST(ProxySettingsTest, StandsLongLists)
{
    std::string list;
    for (int i = 0; i < 100'000; ++i)
        list += "*a*a*a*b;";
    const std::string server = "http://" + std::string(253, 'a') + ":80";
    EXPECT_EQ(proxyFor({list + "end:80", ""}, server), "http://end:80");
    EXPECT_EQ(proxyFor({"a:80", list}, server), "http://a:80");
    EXPECT_EQ(proxyFor({"a:80", std::string(1'000'000, '*') + "b"}, server), "http://a:80");
}

}  // namespace
