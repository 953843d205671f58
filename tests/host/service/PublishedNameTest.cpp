#include "host/service/PublishedName.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::IsEmpty;

namespace VelkHost {
namespace {

struct NameCase
{
    const char* name;
    std::string file;
    const char* reason;  // part of it; empty: the name can be published
};

const NameCase nameCases[] = {
    {"Plain", "Scopia.calibz", ""},
    {"Blanks", "two  words .calib", ""},
    {"Umlauts",
     "K\xC3\xBC"
     "che.calib",
     ""},
    {"Cjk", "\xE6\xA4\x85\xE5\xAD\x90.calib", ""},
    {"Signs", "~It's (a) $5 deal; 50=50, @home!.calib", ""},
    {"Dots", "a.b..calib", ""},
    {"LikeADevice", "console.calib", ""},
    {"TwoHundred", std::string(200, 'n') + ".calib", ""},
    {"LongestStem", std::string(246, 'n') + ".calib", ""},
    // Names that do not survive in the request
    {"Percent", "100% wool.calib", "\"%\""},
    {"Ampersand", "Smith & Sons.calib", "\"&\""},
    {"NumberSign", "No #1.calib", "\"#\""},
    {"Plus", "A+B.calib", "\"+\""},
    // Names that not every disk can store
    {"Empty", "", "is not a file name"},
    {"Parent", "..", "is not a file name"},
    {"Slash", "a/b.calib", "\"/\""},
    {"Backslash", "a\\b.calib", "\"\\\""},
    {"Colon", "a:b.calib", "\":\""},
    {"Star", "a*.calib", "\"*\""},
    {"Question", "a?.calib", "\"?\""},
    {"Quote", "a\".calib", "\"\"\""},
    {"Less", "a<.calib", "\"<\""},
    {"Greater", "a>.calib", "\">\""},
    {"Bar", "a|.calib", "\"|\""},
    {"LineFeed", "a\nb.calib", "control character"},
    {"Delete", "a\x7F.calib", "control character"},
    {"Zero", std::string("a\0b.calib", 9), "control character"},
    {"EndsWithDot", "a.calib.", "ends with a dot or a blank"},
    {"EndsWithBlank", "a.calib ", "ends with a dot or a blank"},
    {"Device", "CON.calib", "device"},
    {"NumberedDevice", "lpt1.x.calib", "device"},
    {"OddBytes", "a\xFF.calib", "UTF-8"},
    {"TooLong", std::string(250, 'n') + ".calib", "255 bytes"},
    {"TooLongForADownload", std::string(247, 'n') + ".calib", "246 bytes"},
};

class LibraryName : public testing::TestWithParam<NameCase>
{};

TEST_P(LibraryName, IsJudged)
{
    const std::string reason = whyNoLibraryName(fileString(GetParam().file));
    EXPECT_EQ(reason.empty(), *GetParam().reason == '\0') << reason;
    EXPECT_THAT(reason, HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(Names, LibraryName, testing::ValuesIn(nameCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LogoName, IsOfPlainFileNames)
{
    EXPECT_THAT(whyNoLogoName("acme.png"), IsEmpty());
    EXPECT_THAT(whyNoLogoName("T\xC3\xBCr 1.png"), IsEmpty());
    EXPECT_THAT(whyNoLogoName(""), HasSubstr("is not a file name"));
    EXPECT_THAT(whyNoLogoName(".."), HasSubstr("is not a file name"));
    EXPECT_THAT(whyNoLogoName("doors/acme.png"), IsEmpty());
    EXPECT_THAT(whyNoLogoName("doors/2026/acme.png"), IsEmpty());
    for (const char* name :
         {"/acme.png", "doors/", "doors//acme.png", "../acme.png", "doors/../acme.png", "./acme.png"})
        EXPECT_THAT(whyNoLogoName(name), HasSubstr("is not a file name")) << name;
    EXPECT_THAT(whyNoLogoName("nul/acme.png"), HasSubstr("device"));
    EXPECT_THAT(whyNoLogoName("doors /acme.png"), HasSubstr("ends with a dot or a blank"));
    std::string deep = "a.png";
    while (deep.size() <= 1'024)
        deep.insert(0, "doors/");
    EXPECT_THAT(whyNoLogoName(deep), HasSubstr("1024 bytes"));
    EXPECT_THAT(whyNoLogoName(deep.substr(6)), IsEmpty());
    EXPECT_THAT(whyNoLogoName("doors\\acme.png"), HasSubstr("\"\\\""));
    EXPECT_THAT(whyNoLogoName("c:acme.png"), HasSubstr("\":\""));
    EXPECT_THAT(whyNoLogoName("nul.png"), HasSubstr("device"));
    EXPECT_THAT(whyNoLogoName("CON .png"), HasSubstr("device"));
    EXPECT_THAT(whyNoLogoName("a+b.png"), HasSubstr("\"+\""));
}

TEST(LogoName, MustExistInWindows1252)
{
    EXPECT_THAT(whyNoLogoName("\xE2\x82\xAC.png"), IsEmpty());
    EXPECT_THAT(whyNoLogoName("\xE6\xA4\x85.png"), HasSubstr("Windows-1252"));
}

TEST(LogoName, IsNoneOfTheClientsOwnFiles)
{
    for (const char* name :
         {"Manufacturer_Data.json", "manufacturer_data_temp.JSON", "catalog_hash.txt", "catalog_filters.json",
          "Errors.log", "doors/manufacturer_data.json", "errors.log/acme.png"})
        EXPECT_THAT(whyNoLogoName(name), HasSubstr("own files")) << name;
}

TEST(LookupKey, IgnoresLetterCase)
{
    EXPECT_EQ(lookupKey("AZ[%C3%9Caz"), "az[%c3%9caz");
}

TEST(Caseless, KnowsMoreThanAscii)
{
    EXPECT_EQ(caseless("K\xC3\x9C"
                       "CHE"),
              caseless("k\xC3\xBC"
                       "che"));
    EXPECT_NE(caseless("a"), caseless("b"));
}

}  // namespace
}  // namespace VelkHost
