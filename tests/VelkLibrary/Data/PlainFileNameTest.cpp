#include <VelkLibrary/Data/PlainFileName.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Library::holdsControlCharacter;
using Library::isPlainFileName;

class PlainName : public testing::TestWithParam<std::string>
{};

TEST_P(PlainName, IsAccepted)
{
    EXPECT_TRUE(isPlainFileName(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Names, PlainName,
                         testing::Values("a", "plants.calib", "Küche 2.calib", "図書館.zip", "a & b # c % d + e.calibz",
                                         ".hidden", "..a", "a..b", " leading blank", "console.calib", "com.calib",
                                         "com0.txt", "com10.txt", "lpt.txt", "xcon", "con-1.calib", "nulls", "conin",
                                         "CONIN$1", "com\u2074.calib", "lpt\u00B9\u00B2.zip", "com\u00BA",
                                         "{}[]()',;=!~$@^`", std::string(255, 'x'),
                                         std::string("odd \xFF byte.calib")));

class UnsafeName : public testing::TestWithParam<std::string>
{};

TEST_P(UnsafeName, IsRefused)
{
    EXPECT_FALSE(isPlainFileName(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Folders, UnsafeName,
                         testing::Values("", ".", "..", "/", "/etc/passwd", "a/b.calib", "../a.calib", "a\\b.calib",
                                         "..\\a.calib", "C:\\a.calib", "C:a.calib", "a:b", "\\\\server\\share"));
INSTANTIATE_TEST_SUITE_P(Characters, UnsafeName,
                         testing::Values("a*.calib", "a?.calib", "a\"b", "a<b", "a>b", "a|b", std::string("a\0b", 3),
                                         "a\nb", "a\tb", "\x1F", "a\x7F", "a.", "a ", "a.calib.", "a.calib ", ". ",
                                         std::string(256, 'x')));
INSTANTIATE_TEST_SUITE_P(Devices, UnsafeName,
                         testing::Values("CON", "con", "Prn", "AUX", "nul", "NUL.calib", "con.tar.gz", "com1",
                                         "COM9.zip", "lpt1", "LPT9.calib", "aux .calib", "CONIN$", "conout$.txt",
                                         "COM\u00B9", "com\u00B2.calib", "Com\u00B3 .tar.gz", "LPT\u00B9.zip",
                                         "lpt\u00B2", "lpt\u00B3.calib"));

TEST(ControlCharacters, AreThoseOfAscii)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text{'a', static_cast<char>(byte)};
        EXPECT_EQ(holdsControlCharacter(text), byte < 0x20 || byte == 0x7F) << byte;
    }
    EXPECT_FALSE(holdsControlCharacter(""));
}

}  // namespace
