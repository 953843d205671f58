#include <VelkCommon/HostServices.h>

#include "support/Numbers.h"
#include "support/Threads.h"

#include <VelkCommon/Reporting/Assertions.h>
#include <VelkCommon/Reporting/PreferenceEngine.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/xl8.h>

#include <gtest/gtest.h>

#include <list>

namespace {

class Application : public applicationManager
{
public:
    std::string getInstanceName() const override { return "editor 2"; }
};

class HostServices : public testing::Test
{
protected:
    ~HostServices() override { Velk::installHost({}); }
};

TEST_F(HostServices, AreThereWithoutAHost)
{
    const auto host = Velk::host();
    ASSERT_NE(host, nullptr);
    EXPECT_FALSE(host->translate);
    EXPECT_FALSE(host->resourceString);
    EXPECT_FALSE(host->preferenceChanged);
    EXPECT_FALSE(host->showMessage);
    EXPECT_FALSE(host->assertionReportsEnabled);
    EXPECT_FALSE(host->reportAssertion);
    EXPECT_FALSE(host->fileSearchReset);
    EXPECT_FALSE(host->loadImage);
    EXPECT_TRUE(host->folders.userDatabase.empty());
    EXPECT_EQ(host->numberFormat.thousandsSeparator, ",");
    EXPECT_EQ(host->numberFormat.decimalPoint, ".");
}

TEST_F(HostServices, HaveAnApplicationWithoutAHost)
{
    ASSERT_NE(gApp, nullptr);
    EXPECT_EQ(gApp->getInstanceName(), "velk");
}

TEST_F(HostServices, HandOverTheApplication)
{
    Application application;
    Velk::HostServices services;
    services.application = &application;
    Velk::installHost(services);
    EXPECT_EQ(gApp, &application);
    EXPECT_EQ(gApp->getInstanceName(), "editor 2");
    Velk::installHost({});
    ASSERT_NE(gApp, nullptr);
    EXPECT_EQ(gApp->getInstanceName(), "velk");
}

TEST_F(HostServices, StayValidWhileHeld)
{
    Velk::HostServices services;
    services.numberFormat.decimalPoint = ";";
    Velk::installHost(services);
    const auto held = Velk::host();
    Velk::installHost({});
    EXPECT_EQ(held->numberFormat.decimalPoint, ";");
    EXPECT_EQ(Velk::host()->numberFormat.decimalPoint, ".");
}

TEST_F(HostServices, MayInstallOthersWhileTheyAreAsked)
{
    Velk::HostServices services;
    services.translate = [](std::u32string_view) {
        Velk::installHost({});
        return std::u32string(U"last words");
    };
    Velk::installHost(services);
    EXPECT_EQ(xl8(U"text"), U"last words");
    EXPECT_EQ(xl8(U"text"), U"text");
}

TEST_F(HostServices, AreReplacedWhileOtherThreadsAsk)
{
    std::list<test::Repeatedly> askers;
    for (int i = 0; i < 3; ++i)
        askers.emplace_back([] {
            const std::u32string text = xl8(U"text");
            EXPECT_TRUE(text == U"text" || text == U"Text");
            EXPECT_FALSE(StringUtils::loadString(test::textNumber::downloadUnit).empty());
            EXPECT_TRUE(showQAVerify());
        });
    for (int n = 0; n < 200; ++n) {
        Velk::HostServices services;
        services.translate = [](std::u32string_view) { return std::u32string(U"Text"); };
        Velk::installHost(std::move(services));
        Velk::installHost({});
    }
}

}  // namespace
