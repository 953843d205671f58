#include <VelkCommon/Text/EnglishTexts.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringUtils.h>

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>

namespace {

struct UsedText
{
    long id;
    int arguments;
};

const UsedText usedTexts[] = {
    {2749, 1},  {2750, 2},  {2752, 0},  {2753, 0},      {2754, 0},      {8709, 1},  {8717, 0},  {8723, 0},
    {8727, 1},  {8745, 0},  {8930, 0},  {10000, 0},     {10001, 0},     {10002, 0}, {10003, 0}, {10004, 0},
    {10005, 0}, {10006, 0}, {10007, 0}, {10008, 0},     {10009, 0},     {10010, 0}, {10011, 0}, {10012, 0},
    {10013, 0}, {10014, 0}, {10108, 0}, {272032175, 1}, {272032391, 1},
};

/// How often `part` stands in `text`.
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
    for (const long id : {-1L, 0L, 1L, 2748L, 2751L, 2755L, 8708L, 9999L, 10015L, 272032390L, 2147483647L})
        EXPECT_FALSE(Velk::englishText(id).has_value()) << id;
}

TEST(EnglishTextsTest, ThePrefixBeforeAFileNameEndsWithABlank)
{
    EXPECT_TRUE(Velk::englishText(8723)->ends_with(' '));
}

TEST(EnglishTextsTest, TheStylesHaveDifferentNames)
{
    std::set<std::string_view> names;
    for (long id = 10000; id <= 10014; ++id)
        names.insert(Velk::englishText(id).value());
    EXPECT_EQ(names.size(), 15u);
}

class LoadString : public testing::Test
{
protected:
    ~LoadString() override { Velk::installHost({}); }

    static void install(std::function<std::optional<std::u32string>(unsigned int)> resourceString)
    {
        Velk::HostServices services;
        services.resourceString = std::move(resourceString);
        Velk::installHost(std::move(services));
    }
};

TEST_F(LoadString, IsEnglishWithoutAHost)
{
    EXPECT_EQ(StringUtils::loadString(8745), "KB");
    EXPECT_EQ(StringUtils::loadUnicodeString(8745), U"KB");
    EXPECT_EQ(StringUtils::loadQString(8745), QStringLiteral("KB"));
}

TEST_F(LoadString, IsEmptyForAnUnknownNumber)
{
    for (const unsigned int id : {0u, 1u, 4294967295u}) {
        EXPECT_EQ(StringUtils::loadString(id), "");
        EXPECT_EQ(StringUtils::loadUnicodeString(id), U"");
        EXPECT_TRUE(StringUtils::loadQString(id).isEmpty());
    }
}

TEST_F(LoadString, AsksTheHostFirst)
{
    install([](unsigned int id) { return std::optional(id == 8745 ? U"\u043A\u0411" : U""); });
    EXPECT_EQ(StringUtils::loadString(8745), "\xD0\xBA\xD0\x91");
    EXPECT_EQ(StringUtils::loadUnicodeString(8745), U"\u043A\u0411");
    EXPECT_EQ(StringUtils::loadQString(8745), QString::fromUtf8("\xD0\xBA\xD0\x91"));
    EXPECT_EQ(StringUtils::loadString(8709), "") << "an empty text of the host is a text";
}

TEST_F(LoadString, HandsOverTheWholeNumber)
{
    install([](unsigned int id) -> std::optional<std::u32string> {
        if (id == 4294967295u)
            return U"last";
        return std::nullopt;
    });
    EXPECT_EQ(StringUtils::loadString(4294967295u), "last");
}

TEST_F(LoadString, FallsBackToEnglishForWhatTheHostLacks)
{
    install([](unsigned int) { return std::optional<std::u32string>(); });
    EXPECT_EQ(StringUtils::loadString(8745), "KB");
}

TEST_F(LoadString, FallsBackToEnglishWhenTheHostThrows)
{
    install([](unsigned int) -> std::optional<std::u32string> { throw std::runtime_error("no resources"); });
    EXPECT_EQ(StringUtils::loadString(8745), "KB");
}

}  // namespace
