#include <VelkCommon/Reporting/PreferenceEngine.h>

#include "support/Numbers.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <VelkCommon/Text/StringConvert.h>

#include <list>
#include <set>
#include <stdexcept>

namespace {

using namespace std::string_literals;
namespace displayType = test::displayType;
namespace preference = test::preference;

enum class Colour { Red };

class Preferences : public test::TestHost
{
protected:
    void install(std::vector<Velk::HostPreference> preferences)
    {
        Velk::HostServices changed = services();
        changed.preferences = std::move(preferences);
        changed.preferenceChanged = [this](std::size_t number, const std::any& value) {
            writes_.emplace_back(number, value);
        };
        Velk::installHost(std::move(changed));
    }

    static PrefSet& prefs() { return PreferenceEngine::getThePrefs().getPrefSet(); }

    /// The texts of the messages so far, as UTF-8.
    std::vector<std::string> texts() const
    {
        std::vector<std::string> result;
        for (const test::Message& message : messages())
            result.push_back(StringConvert::toStdUtf8String(message.text));
        return result;
    }

    std::vector<std::pair<std::size_t, std::any>> writes_;
};

TEST_F(Preferences, HaveOneStore)
{
    EXPECT_EQ(&PreferenceEngine::getThePrefs(), &PreferenceEngine::getThePrefs());
    EXPECT_EQ(&PreferenceEngine::getThePrefs().getPrefSet(), &PreferenceEngine::getThePrefs().getPrefSet());
}

TEST_F(Preferences, OfTheLibraryHaveDefaults)
{
    EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::barOnly);
    EXPECT_EQ(*prefs().get<bool>(preference::lastManualUpdateFailed), false);
    EXPECT_EQ(*prefs().get<bool>(preference::coreLibrariesStay), false);
    for (const std::size_t number :
         {preference::progressDisplay, preference::lastManualUpdateFailed, preference::coreLibrariesStay})
        EXPECT_FALSE(prefs().getPref(number).getDescription().empty());
    EXPECT_TRUE(messages().empty());
}

TEST_F(Preferences, AreTheHosts)
{
    install({{preference::progressDisplay, "display type", displayType::amounts}, {7, "name", "Ann"s}});
    EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::amounts);
    EXPECT_EQ(prefs().getPref(preference::progressDisplay).getDescription(), "display type");
    EXPECT_EQ(*prefs().get<std::string>(7), "Ann");
    EXPECT_EQ(*prefs().get<bool>(preference::lastManualUpdateFailed), false);
    EXPECT_TRUE(messages().empty());
}

TEST_F(Preferences, AreWrittenAndTold)
{
    install({{7, "name", "Ann"s}});
    EXPECT_TRUE(prefs().set(preference::progressDisplay, displayType::percentage));
    EXPECT_TRUE(prefs().set(7, "Ben"s));
    EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::percentage);
    EXPECT_EQ(*prefs().get<std::string>(7), "Ben");
    ASSERT_EQ(writes_.size(), 2u);
    EXPECT_EQ(writes_[0].first, preference::progressDisplay);
    EXPECT_EQ(std::any_cast<int>(writes_[0].second), displayType::percentage);
    EXPECT_EQ(writes_[1].first, 7u);
    EXPECT_EQ(std::any_cast<std::string>(writes_[1].second), "Ben");
    EXPECT_TRUE(messages().empty());
}

TEST_F(Preferences, ReadInPlace)
{
    const int* value = prefs().get<int>(preference::progressDisplay);
    EXPECT_EQ(prefs().get<int>(preference::progressDisplay), value);
    EXPECT_EQ(value, std::any_cast<int>(&prefs().getPref(preference::progressDisplay).value()));
}

TEST_F(Preferences, OfAnotherTypeAreReportedAndReadAsDefault)
{
    install({{7, "The \"best\" n\xC3\xA4me", 5}});
    const bool* value = prefs().get<bool>(7);
    ASSERT_NE(value, nullptr);
    EXPECT_FALSE(*value);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(texts()[0],
              "Get pref isA failure: Expected preference 'The \"best\" n\xC3\xA4me' to be of type 'bool', but instead "
              "found it to be of type 'int'.");
    const test::Message message = messages()[0];
    EXPECT_EQ(message.sourceFile, "PreferenceEngine");
    EXPECT_EQ(message.line, test::reportLine::preferenceRead);
    EXPECT_EQ(message.id, test::messageId::preferenceOfOtherType);
    EXPECT_EQ(message.trait.severity, error::Severity::Warning);
    EXPECT_EQ(message.detail1, U"");
    EXPECT_EQ(message.detail2, U"");
    EXPECT_EQ(*prefs().get<int>(7), 5);
}

TEST_F(Preferences, WithoutAValueAreOfNoType)
{
    const int* value = prefs().get<int>(4711);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, 0);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(texts()[0],
              "Get pref isA failure: Expected preference '' to be of type 'int', but instead found it to be of type "
              "'void'.");
}

TEST_F(Preferences, NameTypesAsPeopleDo)
{
    install({{7, "seven", 5}, {8, "eight", Colour::Red}});
    prefs().get<unsigned long>(7);
    prefs().get<double>(8);
    EXPECT_EQ(
        texts()[0],
        "Get pref isA failure: Expected preference 'seven' to be of type 'unsigned long', but instead found it to "
        "be of type 'int'.");
    EXPECT_NE(texts()[1].find("'double'"), std::string::npos) << texts()[1];
    EXPECT_NE(texts()[1].find("Colour'."), std::string::npos) << texts()[1];
}

TEST_F(Preferences, AreReportedAtEachRead)
{
    prefs().get<bool>(preference::progressDisplay);
    prefs().get<bool>(preference::progressDisplay);
    EXPECT_EQ(messages().size(), 2u);
}

TEST_F(Preferences, OfAnotherTypeAreNotWritten)
{
    install({{7, "seven", 5}});
    EXPECT_FALSE(prefs().set(7, true));
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(texts()[0],
              "Set pref isA failure: Expected preference 'seven' to be of type 'bool', but instead found it to be of "
              "type 'int'.");
    EXPECT_EQ(messages()[0].sourceFile, "PreferenceEngine");
    EXPECT_EQ(messages()[0].id, test::messageId::preferenceOfOtherType);
    EXPECT_EQ(messages()[0].trait.severity, error::Severity::Warning);
    EXPECT_EQ(*prefs().get<int>(7), 5);
    EXPECT_TRUE(writes_.empty());
}

TEST_F(Preferences, WithoutAValueAreNotWritten)
{
    install({});
    EXPECT_FALSE(prefs().set(4712, 5));
    EXPECT_EQ(texts().at(0),
              "Set pref isA failure: Expected preference '' to be of type 'int', but instead found it to be of type "
              "'void'.");
    EXPECT_FALSE(prefs().getPref(4712).value().has_value());
    EXPECT_TRUE(writes_.empty());
}

TEST_F(Preferences, AreWrittenEvenWhenTheHostThrows)
{
    Velk::HostServices changed = services();
    changed.preferenceChanged = [](std::size_t, const std::any&) { throw std::runtime_error("disk full"); };
    Velk::installHost(std::move(changed));
    EXPECT_TRUE(prefs().set(preference::progressDisplay, displayType::amounts));
    EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::amounts);
}

TEST_F(Preferences, MayBeReadWhileAWriteIsTold)
{
    int seen = 0;
    Velk::HostServices changed = services();
    changed.preferenceChanged = [&seen](std::size_t number, const std::any&) {
        seen = *PreferenceEngine::getThePrefs().getPrefSet().get<int>(number);
    };
    Velk::installHost(std::move(changed));
    EXPECT_TRUE(prefs().set(preference::progressDisplay, displayType::amounts));
    EXPECT_EQ(seen, displayType::amounts);
}

TEST_F(Preferences, GoBackToTheDefaultsWithTheHost)
{
    install({{preference::progressDisplay, "display type", displayType::amounts}, {7, "seven", 5}});
    EXPECT_TRUE(prefs().set(preference::lastManualUpdateFailed, true));
    Velk::installHost({});
    EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::barOnly);
    EXPECT_NE(prefs().getPref(preference::progressDisplay).getDescription(), "display type");
    EXPECT_EQ(*prefs().get<bool>(preference::lastManualUpdateFailed), false);
    EXPECT_FALSE(prefs().getPref(7).value().has_value());
    EXPECT_EQ(prefs().getPref(7).getDescription(), "");
}

TEST_F(Preferences, ListedTwiceHaveTheLastValue)
{
    install({{7, "first", 1}, {7, "second", 2}});
    EXPECT_EQ(*prefs().get<int>(7), 2);
    EXPECT_EQ(prefs().getPref(7).getDescription(), "second");
}

TEST_F(Preferences, StayWhereTheyAre)
{
    SinglePref& pref = prefs().getPref(7);
    EXPECT_EQ(&prefs().getPref(7), &pref);
    install({{7, "seven", 5}});
    EXPECT_EQ(&prefs().getPref(7), &pref);
    EXPECT_EQ(pref.getDescription(), "seven");
    for (std::size_t number = 1000; number < 2000; ++number)
        prefs().getPref(number);
    Velk::installHost({});
    EXPECT_EQ(&prefs().getPref(7), &pref);
}

TEST_F(Preferences, AreFoundByManyThreads)
{
    {
        std::list<test::Repeatedly> readers;
        for (std::size_t i = 0; i < 3; ++i)
            readers.emplace_back([i] {
                prefs().getPref(5000 + i);
                EXPECT_EQ(*prefs().get<int>(preference::progressDisplay), displayType::barOnly);
            });
        for (int n = 0; n < 200; ++n)
            install({{7, "seven", n}});
    }
    EXPECT_EQ(*prefs().get<int>(7), 199);
}

}  // namespace
