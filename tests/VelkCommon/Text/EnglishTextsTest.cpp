#include <VelkCommon/Text/EnglishTexts.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringUtils.h>

#include "support/Numbers.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>

namespace {

namespace messageId = test::messageId;
namespace textNumber = test::textNumber;

struct UsedText
{
    long id;
    int arguments;
};

const UsedText usedTexts[] = {
    {textNumber::percentage, 1},           {textNumber::amounts, 2},           {textNumber::amountsToolTip, 0},
    {textNumber::barOnlyToolTip, 0},       {textNumber::percentageToolTip, 0}, {textNumber::downloading, 1},
    {textNumber::checkingCatalogs, 0},     {textNumber::checkingCatalog, 0},   {textNumber::askingService, 1},
    {textNumber::downloadUnit, 0},         {textNumber::noFilter, 0},          {textNumber::manufacturerCard, 0},
    {messageId::preferenceOfOtherType, 1}, {messageId::fileUnwritable, 1},
};

/// How often `part` occurs in `text`.
int count(std::string_view text, std::string_view part)
{
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

class EnglishTexts : public testing::TestWithParam<UsedText>
{};

TEST_P(EnglishTexts, AreThereForEveryNumberInUse)
{
    const auto text = Velk::englishText(GetParam().id);
    ASSERT_TRUE(text.has_value());
    EXPECT_FALSE(text->empty());
}

TEST_P(EnglishTexts, HaveOnePlaceholderForEachArgument)
{
    const std::string_view text = Velk::englishText(GetParam().id).value();
    for (int argument = 1; argument <= 9; ++argument)
        EXPECT_EQ(count(text, "%" + std::to_string(argument) + "%"), argument <= GetParam().arguments ? 1 : 0) << text;
    const int percentSigns = count(text, "%") - 2 * GetParam().arguments;
    EXPECT_EQ(percentSigns, 2 * count(text, "%%")) << "a lone percent sign: " << text;
}

INSTANTIATE_TEST_SUITE_P(Used, EnglishTexts, testing::ValuesIn(usedTexts),
                         [](const auto& row) { return "Number" + std::to_string(row.param.id); });

TEST(EnglishTextsTest, NoOtherNumberHasOne)
{
    const auto next = [](auto number, long distance) { return static_cast<long>(number) + distance; };
    for (const long id :
         {-1L, 0L, 1L, next(textNumber::percentage, -1), next(textNumber::percentageToolTip, 1),
          next(textNumber::downloading, -1), next(textNumber::firstStyle, -1), next(textNumber::lastStyle, 1),
          next(textNumber::unknown, 0), next(messageId::fileUnwritable, -1), 2147483647L})
        EXPECT_FALSE(Velk::englishText(id).has_value()) << id;
}

TEST(EnglishTextsTest, ThePrefixBeforeAFileNameEndsWithABlank)
{
    EXPECT_TRUE(Velk::englishText(textNumber::checkingCatalog)->ends_with(' '));
}

TEST(EnglishTextsTest, TheStylesHaveDifferentNames)
{
    std::set<std::string_view> names;
    for (long id = textNumber::firstStyle; id <= static_cast<long>(textNumber::lastStyle); ++id) {
        EXPECT_FALSE(Velk::englishText(id).value_or("").empty()) << id;
        EXPECT_EQ(count(Velk::englishText(id).value_or(""), "%"), 0) << id;
        names.insert(Velk::englishText(id).value_or(""));
    }
    EXPECT_EQ(names.size(), 15u);
}

class LoadedText : public testing::Test
{
protected:
    ~LoadedText() override { Velk::installHost({}); }

    static void install(std::function<std::optional<std::u32string>(unsigned int)> resourceString)
    {
        Velk::HostServices services;
        services.resourceString = std::move(resourceString);
        Velk::installHost(std::move(services));
    }
};

TEST_F(LoadedText, IsEnglishWithoutAHost)
{
    EXPECT_EQ(StringUtils::loadString(textNumber::downloadUnit), "KB");
    EXPECT_EQ(StringUtils::loadUnicodeString(textNumber::downloadUnit), U"KB");
    EXPECT_EQ(StringUtils::loadQString(textNumber::downloadUnit), QStringLiteral("KB"));
}

TEST_F(LoadedText, IsEmptyForAnUnknownNumber)
{
    for (const unsigned int id : {0u, 1u, 4294967295u}) {
        EXPECT_EQ(StringUtils::loadString(id), "");
        EXPECT_EQ(StringUtils::loadUnicodeString(id), U"");
        EXPECT_TRUE(StringUtils::loadQString(id).isEmpty());
    }
}

TEST_F(LoadedText, AsksTheHostFirst)
{
    install([](unsigned int id) { return std::optional(id == textNumber::downloadUnit ? U"\u043A\u0411" : U""); });
    EXPECT_EQ(StringUtils::loadString(textNumber::downloadUnit), "\xD0\xBA\xD0\x91");
    EXPECT_EQ(StringUtils::loadUnicodeString(textNumber::downloadUnit), U"\u043A\u0411");
    EXPECT_EQ(StringUtils::loadQString(textNumber::downloadUnit), QString::fromUtf8("\xD0\xBA\xD0\x91"));
    EXPECT_EQ(StringUtils::loadString(textNumber::downloading), "") << "an empty text of the host is a text";
}

TEST_F(LoadedText, HandsOverTheWholeNumber)
{
    install([](unsigned int id) -> std::optional<std::u32string> {
        if (id == 4294967295u)
            return U"last";
        return std::nullopt;
    });
    EXPECT_EQ(StringUtils::loadString(4294967295u), "last");
}

TEST_F(LoadedText, FallsBackToEnglishForWhatTheHostLacks)
{
    install([](unsigned int) { return std::optional<std::u32string>(); });
    EXPECT_EQ(StringUtils::loadString(textNumber::downloadUnit), "KB");
}

TEST_F(LoadedText, FallsBackToEnglishWhenTheHostThrows)
{
    install([](unsigned int) -> std::optional<std::u32string> { throw std::runtime_error("no resources"); });
    EXPECT_EQ(StringUtils::loadString(textNumber::downloadUnit), "KB");
}

}  // namespace
