#include <VelkCommon/Text/PercentEncoding.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

TEST(PercentEncodedTest, EncodesWhatDoesNotStay)
{
    const auto isSmall = [](char c) { return c >= 'a' && c <= 'z'; };
    EXPECT_EQ(Velk::percentEncoded("", isSmall), "");
    EXPECT_EQ(Velk::percentEncoded("aB/z", isSmall), "a%42%2Fz");
    EXPECT_EQ(Velk::percentEncoded(std::string("\0\xFF", 2), isSmall), "%00%FF");
}

TEST(WireFormTest, EncodesWhatNoUrlCanCarryAndNothingElse)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string wire = Velk::wireForm(all);
    std::string kept;
    for (std::size_t i = 0; i < wire.size(); ++i) {
        const bool encoded = wire[i] == '%' && wire.substr(i, 3) != "%&'";
        if (encoded)
            i += 2;
        else
            kept += wire[i];
    }
    EXPECT_EQ(kept, "!#$%&'()*+,-./0123456789:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]_abcdefghijklmnopqrstuvwxyz~");
    EXPECT_EQ(Velk::wireForm("\x01 \"<>\\^`{|}\x7F\x80\xFF"), "%01%20%22%3C%3E%5C%5E%60%7B%7C%7D%7F%80%FF");
    EXPECT_EQ(Velk::wireForm("%20%zz%"), "%20%zz%");
    EXPECT_EQ(Velk::wireForm("a b\x01\x7F\"<>\\^`{|}\xC3\xBC"), "a%20b%01%7F%22%3C%3E%5C%5E%60%7B%7C%7D%C3%BC");
}

}  // namespace
