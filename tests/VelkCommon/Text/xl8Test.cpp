#include <VelkCommon/Text/xl8.h>

#include <VelkCommon/HostServices.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class Translation : public testing::Test
{
protected:
    ~Translation() override { Velk::installHost({}); }

    static void install(std::function<std::u32string(std::u32string_view)> translate)
    {
        Velk::HostServices services;
        services.translate = std::move(translate);
        Velk::installHost(std::move(services));
    }
};

TEST_F(Translation, WithoutAHostIsTheLiteral)
{
    EXPECT_EQ(xl8(U"errors.log"), U"errors.log");
    EXPECT_EQ(xl8("errors.log"), "errors.log");
    EXPECT_EQ(xl8(U""), U"");
    EXPECT_EQ(xl8(""), "");
}

TEST_F(Translation, IsTheHosts)
{
    install([](std::u32string_view text) { return text == U"Kitchen" ? U"K\u00FCche" : U""; });
    EXPECT_EQ(xl8(U"Kitchen"), U"K\u00FCche");
    EXPECT_EQ(xl8("Kitchen"),
              "K\xC3\xBC"
              "che");
}

TEST_F(Translation, ThatIsEmptyIsTheLiteral)
{
    install([](std::u32string_view) { return std::u32string(); });
    EXPECT_EQ(xl8(U"Kitchen"), U"Kitchen");
    EXPECT_EQ(xl8("Kitchen"), "Kitchen");
}

TEST_F(Translation, ThatThrowsIsTheLiteral)
{
    install([](std::u32string_view) -> std::u32string { throw std::runtime_error("no translator"); });
    EXPECT_EQ(xl8(U"Kitchen"), U"Kitchen");
    EXPECT_EQ(xl8("Kitchen"), "Kitchen");
}

TEST_F(Translation, GetsNarrowTextAsUtf8AndLeavesItsBytesAlone)
{
    std::u32string asked;
    install([&asked](std::u32string_view text) {
        asked = text;
        return std::u32string();
    });
    EXPECT_EQ(xl8("K\xC3\xBC\xFF"), "K\xC3\xBC\xFF");
    EXPECT_EQ(asked, U"K\u00FC\uFFFD");
}

TEST_F(Translation, OfNoTextIsEmpty)
{
    EXPECT_EQ(xl8(static_cast<const char*>(nullptr)), "");
    EXPECT_EQ(xl8(static_cast<const char32_t*>(nullptr)), U"");
}

TEST_F(Translation, MayAskForAnother)
{
    install([](std::u32string_view text) { return text == U"outer" ? xl8(U"inner") + U"!" : U"[inner]"; });
    EXPECT_EQ(xl8(U"outer"), U"[inner]!");
}

}  // namespace
