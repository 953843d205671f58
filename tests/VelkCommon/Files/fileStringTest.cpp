#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Platform/PathText.h>

#include "support/Names.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <chrono>
#include <limits>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

using Velk::Platform::separator;

namespace {

// ---- Parts of a path -----------------------------------------------------------------------------

struct Parts
{
    const char* name;
    std::string path;
    std::string parent;
    std::string parentWithSeparator;
    std::string pathAndName;
    std::string stem;
    std::string stemWithExtension;
    std::string extension;
};

class fileStringParts : public testing::TestWithParam<Parts>
{};

TEST_P(fileStringParts, AreThoseOfTheText)
{
    const Parts& parts = GetParam();
    std::string parentWithSeparator = parts.parentWithSeparator;
    if (!parts.parent.empty() && parts.parent != "/")
        parentWithSeparator.back() = separator;
    const fileString path(parts.path);
    EXPECT_EQ(path.parentPath().utf8(), parts.parent);
    EXPECT_EQ(path.parentPathWithSeparator().utf8(), parentWithSeparator);
    EXPECT_EQ(path.pathAndName().utf8(), parts.pathAndName);
    EXPECT_EQ(path.stem().utf8(), parts.stem);
    EXPECT_EQ(path.stemWithExtension().utf8(), parts.stemWithExtension);
    EXPECT_EQ(path.extension().utf8(), parts.extension);
    EXPECT_TRUE(path.hasExtension(parts.extension));
    EXPECT_FALSE(path.hasExtension(parts.extension + "x"));
}

INSTANTIATE_TEST_SUITE_P(
    Paths, fileStringParts,
    testing::Values(Parts{"Empty", "", "", "", "", "", "", ""},
                    Parts{"Usual", "/a/b.calib", "/a", "/a/", "/a/b", "b", "b.calib", ".calib"},
                    Parts{"SeveralDots", "/a/b.tar.gz", "/a", "/a/", "/a/b.tar", "b.tar", "b.tar.gz", ".gz"},
                    Parts{"NoExtension", "/a/b", "/a", "/a/", "/a/b", "b", "b", ""},
                    Parts{"DotInTheFolderOnly", "/a.x/b", "/a.x", "/a.x/", "/a.x/b", "b", "b", ""},
                    Parts{"HiddenName", "/a/.name", "/a", "/a/", "/a/.name", ".name", ".name", ""},
                    Parts{"HiddenNameWithExtension", "/a/.name.x", "/a", "/a/", "/a/.name", ".name", ".name.x", ".x"},
                    Parts{"DotAtTheEnd", "/a/b.", "/a", "/a/", "/a/b", "b", "b.", "."},
                    Parts{"Dot", "/a/.", "/a", "/a/", "/a/.", ".", ".", ""},
                    Parts{"DotDot", "/a/..", "/a", "/a/", "/a/..", "..", "..", ""},
                    Parts{"ThreeDots", "...", "", "", "..", "..", "...", "."},
                    Parts{"Relative", "b.x", "", "", "b", "b", "b.x", ".x"},
                    Parts{"RelativeInFolder", "a/b.x", "a", "a/", "a/b", "b", "b.x", ".x"},
                    Parts{"TrailingSeparator", "/a/b/", "/a/b", "/a/b/", "/a/b/", "", "", ""},
                    Parts{"DoubledSeparator", "/a//b", "/a", "/a/", "/a//b", "b", "b", ""},
                    Parts{"Root", "/", "/", "/", "/", "", "", ""},
                    Parts{"BelowTheRoot", "/a", "/", "/", "/a", "a", "a", ""},
                    Parts{"UpperCaseExtension", "/a/B.CALIB", "/a", "/a/", "/a/B", "B", "B.CALIB", ".CALIB"},
                    Parts{"NotAscii", "/ä/ö.é", "/ä", "/ä/", "/ä/ö", "ö", "ö.é", ".é"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(fileStringExtension, CountsLetterCaseUnlessAskedNotTo)
{
    const fileString path(std::string("/a/b.CaLiB"));
    EXPECT_TRUE(path.hasExtension(".CaLiB"));
    EXPECT_FALSE(path.hasExtension(".calib"));
    EXPECT_TRUE(path.hasExtensionInAnyCase(".calib"));
    EXPECT_FALSE(path.hasExtensionInAnyCase(".calibz"));
    EXPECT_FALSE(path.hasExtensionInAnyCase("calib"));
    EXPECT_FALSE(path.hasExtensionInAnyCase(""));
    EXPECT_TRUE(fileString(std::string("/a.x/b")).hasExtensionInAnyCase(""));
    EXPECT_TRUE(fileString(std::string("b.\u00C9")).hasExtensionInAnyCase(".\u00E9"));
}

// ---- Joining -------------------------------------------------------------------------------------

struct Join
{
    const char* name;
    std::string folder;
    std::string file;
    std::string joined;  // with "*" for the system's separator
};

class fileStringJoin : public testing::TestWithParam<Join>
{};

TEST_P(fileStringJoin, HasExactlyOneSeparator)
{
    std::string joined = GetParam().joined;
    std::replace(joined.begin(), joined.end(), '*', separator);
    const fileString folder(GetParam().folder);
    const fileString file(GetParam().file);
    EXPECT_EQ((folder / file).utf8(), joined);
    EXPECT_EQ((folder / file.unicodeString()).utf8(), joined);
}

INSTANTIATE_TEST_SUITE_P(Paths, fileStringJoin,
                         testing::Values(Join{"Without", "/a", "b", "/a*b"}, Join{"InFolder", "/a/", "b", "/a/b"},
                                         Join{"InName", "/a", "/b", "/a*b"}, Join{"InBoth", "/a/", "/b", "/a/b"},
                                         Join{"Several", "/a//", "//b", "/a/b"}, Join{"Root", "/", "b", "/b"},
                                         Join{"RootAndAbsolute", "/", "/b", "/b"}, Join{"NoFolder", "", "b", "b"},
                                         Join{"NoName", "/a", "", "/a"}, Join{"NoNameKeepsEnd", "/a/", "", "/a/"},
                                         Join{"NoFolderAbsoluteName", "", "/b", "/b"},
                                         Join{"NothingIsNormalised", "/a/.", "../b//c/", "/a/.*../b//c/"},
                                         Join{"RelativeFolder", "a", "b", "a*b"},
                                         Join{"NameOfSeparatorsOnly", "/a", "/", "/a*"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(fileString, PlusAddsNoSeparator)
{
    EXPECT_EQ((fileString(std::string("/a")) + fileString(std::u32string(U"b"))).utf8(), "/ab");
    EXPECT_EQ((fileString(std::string("/a.zip")) + fileString(std::string("|")) + fileString(std::string("b"))).utf8(),
              "/a.zip|b");
    EXPECT_EQ((fileString() + fileString()).utf8(), "");
}

// ---- Values --------------------------------------------------------------------------------------

TEST(fileString, ComparesByExactText)
{
    const fileString a(std::string("/a"));
    EXPECT_EQ(a, fileString(std::u32string(U"/a")));
    EXPECT_NE(a, fileString(std::string("/A")));
    EXPECT_NE(a, fileString(std::string("/a/")));
    EXPECT_LT(fileString(std::string("/B")), a);
    EXPECT_LT(fileString(), a);
    EXPECT_FALSE(a < a);
}

TEST(fileString, OrdersByCodePoint)
{
    const std::set<fileString> sorted{std::u32string(U"\U0001F600"), std::u32string(U"\uFF21"), std::u32string(U"é"),
                                      std::u32string(U"z")};
    const std::vector<std::u32string> expected{U"z", U"é", U"\uFF21", U"\U0001F600"};
    std::vector<std::u32string> texts;
    for (const fileString& path : sorted)
        texts.push_back(path.unicodeString());
    EXPECT_EQ(texts, expected);
}

TEST(fileString, IsAnOrdinaryValueAndKey)
{
    fileString path(std::string("/a"));
    const fileString copy = path;
    fileString moved = std::move(path);
    EXPECT_EQ(copy, moved);
    path = copy;
    EXPECT_EQ(path, moved);
    moved = fileString(std::string("/b"));
    EXPECT_EQ(path, copy);
    std::map<fileString, int> map{{copy, 1}, {moved, 2}};
    EXPECT_EQ(map[fileString(std::string("/b"))], 2);
}

TEST(fileString, EmptyMeansNoPath)
{
    EXPECT_TRUE(fileString().empty());
    EXPECT_TRUE(fileString(std::u32string()).empty());
    EXPECT_FALSE(fileString(std::string("/")).empty());
    EXPECT_FALSE(fileString().pathExists());
    EXPECT_EQ(fileString().modificationTime(), 0);
}

TEST(fileString, WritesItsDisplayForm)
{
    std::ostringstream out;
    out << fileString(std::u32string(U"/ä/日本.calib"));
    EXPECT_EQ(out.str(), test::shown("/ä/日本.calib"));
    EXPECT_EQ(fileString(std::u32string(U"/ä")).humanReadableString(), test::shown("/ä"));
    EXPECT_EQ(StringConvert::toStdUtf8String(fileString(std::u32string(U"/ä"))), "/ä");
}

// ---- Forms of the text ---------------------------------------------------------------------------

void expectRoundTrip(const std::string& bytes)
{
    const fileString path(bytes);
    ASSERT_EQ(path.utf8(), bytes);
    ASSERT_EQ(fileString(path.unicodeString()).utf8(), bytes) << testing::PrintToString(bytes);
}

TEST(fileString, EveryShortByteStringSurvivesUtf32)
{
    for (unsigned pair = 0; pair <= 0xFFFF; ++pair) {
        const std::string bytes{static_cast<char>(pair >> 8U), static_cast<char>(pair & 0xFFU)};
        expectRoundTrip(bytes);
        expectRoundTrip(bytes.substr(1));
    }
}

// All sequences of three and of four bytes, made of bytes at the limits of the classes of UTF-8.
TEST(fileString, EveryEdgeOfUtf8SurvivesUtf32)
{
    const std::string edges =
        "\x01\x7F\x80\x8F\x90\x9F\xA0\xAF\xB0\xB2\xB3\xB4\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC"
        "\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
    std::string bytes(4, '\0');
    for (const char a : edges)
        for (const char b : edges)
            for (const char c : edges)
                for (const char d : edges) {
                    bytes = {a, b, c, d};
                    expectRoundTrip(bytes);
                }
}

TEST(fileString, RandomBytesSurviveUtf32)
{
    std::mt19937 random(20260301);
    for (int round = 0; round < 20000; ++round) {
        std::string bytes(random() % 40, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 3 == 0 ? random() : 0x80U | random());
        expectRoundTrip(bytes);
    }
}

TEST(fileString, EveryCodePointSurvivesBytes)
{
    constexpr char32_t blockSize = 0x1000;
    for (char32_t block = 0; block <= 0x10FFFF; block += blockSize) {
        std::u32string text(blockSize, U'\0');
        std::iota(text.begin(), text.end(), block);
        ASSERT_TRUE(fileString(text).unicodeString() == text) << std::hex << static_cast<unsigned>(block);
    }
}

TEST(fileString, LoneSurrogatesSurviveEveryForm)
{
    for (const char32_t point : {0xD800U, 0xDBFFU, 0xDC00U, 0xDC7FU, 0xDC80U, 0xDCFFU, 0xDD00U, 0xDFFFU}) {
        const std::u32string text{static_cast<char32_t>(Velk::Platform::separator), static_cast<char32_t>(point), U'x'};
        const fileString path(text);
        EXPECT_EQ(path.unicodeString(), text);
        EXPECT_EQ(fileString::fromNative(path.toNativeString()), path);
    }
}

struct Decoding
{
    const char* name;
    std::string bytes;
    std::u32string points;
};

class fileStringDecoding : public testing::TestWithParam<Decoding>
{};

TEST_P(fileStringDecoding, ShowsOddBytesAsTheirOwnCodePoints)
{
    EXPECT_EQ(fileString(GetParam().bytes).unicodeString(), GetParam().points);
    EXPECT_EQ(fileString(GetParam().points).utf8(), GetParam().bytes);
}

const char32_t dc80 = 0xDC80;

INSTANTIATE_TEST_SUITE_P(
    Texts, fileStringDecoding,
    testing::Values(Decoding{"Ascii", "a b", U"a b"}, Decoding{"TwoBytes", "\xC3\xA9", U"é"},
                    Decoding{"FourBytes", "\xF0\x9F\x98\x80", U"\U0001F600"},
                    Decoding{"Latin1Name", "caf\xE9.zip", {U'c', U'a', U'f', 0xDCE9, U'.', U'z', U'i', U'p'}},
                    Decoding{"LoneContinuation", "\x80", {dc80}}, Decoding{"CutSequence", "\xE2\x82", {0xDCE2, 0xDC82}},
                    Decoding{"Overlong", "\xC0\xAF", {0xDCC0, 0xDCAF}},
                    Decoding{"BeyondUnicode", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
                    Decoding{"Surrogate", "\xED\xA0\xBD", {0xD83D}},
                    Decoding{"SurrogateOfAnOddByte", "\xED\xB2\x80", {0xDCED, 0xDCB2, 0xDC80}},
                    Decoding{"ZeroByte", std::string("a\0b", 3), std::u32string(U"a\0b", 3)}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(fileString, ValuesAboveUnicodeBecomeTheReplacementCharacter)
{
    const std::u32string text{0x110000, std::numeric_limits<char32_t>::max()};
    EXPECT_EQ(fileString(text).utf8(), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

#ifndef _WIN32
TEST(fileString, NativeFormIsUtf32OnPosix)
{
    EXPECT_EQ(fileString(std::string("/ä/\U0001F600\\x")).toNativeString(), L"/ä/\U0001F600\\x");
    EXPECT_EQ(fileString::fromNative(L"/ä/\U0001F600").utf8(), "/ä/\U0001F600");
}
#endif

// ---- On disk -------------------------------------------------------------------------------------

class fileStringOnDisk : public test::TestHost
{};

TEST_F(fileStringOnDisk, ExistsAsFileAndAsFolder)
{
    const fileString path = folder() / U"a.txt";
    EXPECT_FALSE(path.pathExists());
    test::writeFile(path, "x");
    EXPECT_TRUE(path.pathExists());
    EXPECT_TRUE(folder().pathExists());
    EXPECT_TRUE((folder() + fileString(std::string("/"))).pathExists());
}

TEST_F(fileStringOnDisk, ATextWithAZeroByteNamesNothing)
{
    test::writeFile(folder() / U"a", "x");
    EXPECT_FALSE((folder() / std::u32string(U"a\0b", 3)).pathExists());
    EXPECT_FALSE(FileUtils::removePath(folder() / std::u32string(U"a\0b", 3), FileUtils::noFlags));
    EXPECT_TRUE((folder() / U"a").pathExists());
}

TEST_F(fileStringOnDisk, ModificationTimeCountsLikeTime)
{
    const fileString path = folder() / U"a.txt";
    EXPECT_EQ(path.modificationTime(), 0);
    // Of all clocks this one never lags, as that of time() and that of the file system may, by a tick.
    using Clock = std::chrono::system_clock;
    const auto before = static_cast<long long>(Clock::to_time_t(Clock::now()));
    test::writeFile(path, "x");
    const auto after = static_cast<long long>(Clock::to_time_t(Clock::now()));
    EXPECT_GE(path.modificationTime(), before - 1);
    EXPECT_LE(path.modificationTime(), after);
}

TEST_F(fileStringOnDisk, TemporaryNamesAreFreshAndInTheTemporaryFolder)
{
    std::set<fileString> names;
    for (int i = 0; i < 1000; ++i) {
        fileString path(std::string("/elsewhere/archive.calibz"));
        fileString& result = path.generateAsTempName(std::string(".calib"));
        EXPECT_EQ(&result, &path);
        EXPECT_EQ(path.extension().utf8(), ".calib");
        EXPECT_EQ(path.parentPathWithSeparator(), PathUtils::getObject().getTempPath());
        EXPECT_GE(path.stem().utf8().size(), 32U);
        EXPECT_FALSE(path.pathExists());
        names.insert(path);
    }
    EXPECT_EQ(names.size(), 1000U);
    EXPECT_THAT(test::listFolder(folder() / U"temp"), testing::IsEmpty());
}

TEST_F(fileStringOnDisk, TemporaryNameMakesTheFolder)
{
    auto services = this->services();
    services.folders.temp = folder() / U"new/deep";
    Velk::installHost(services);
    fileString path;
    test::writeFile(path.generateAsTempName(std::string(".zip")), "x");
    EXPECT_EQ(test::listFolder(folder() / U"new/deep").size(), 1U);
}

}  // namespace
