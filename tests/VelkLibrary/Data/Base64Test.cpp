#include <VelkLibrary/Base64.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <string_view>
#include <type_traits>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

Bytes bytes(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

std::string messageOf(const std::string& text)
{
    try {
        Base64::decode(text);
        return "decoded";
    } catch (const Base64::InvalidCharacterException& exception) {
        return exception.what();
    }
}

struct CodecCase
{
    const char* name;
    std::string_view data;
    const char* text;
};

void PrintTo(const CodecCase& row, std::ostream* out)
{
    *out << row.text;
}

using namespace std::string_view_literals;

const CodecCase codecCases[] = {
    {"Nothing", "", ""},
    {"OneByte", "M", "TQ=="},
    {"TwoBytes", "Ma", "TWE="},
    {"ThreeBytes", "Man", "TWFu"},
    {"FourBytes", "foob", "Zm9vYg=="},
    {"FiveBytes", "fooba", "Zm9vYmE="},
    {"SixBytes", "foobar", "Zm9vYmFy"},
    {"Zeros", "\0\0\0\0"sv, "AAAAAA=="},
    {"AllBitsOne", "\xFF"sv, "/w=="},
    {"AllBitsTwo", "\xFF\xFF"sv, "//8="},
    {"AllBitsThree", "\xFF\xFF\xFF"sv, "////"},
    {"PlusAndSlash", "\xFB\xEF\xBF"sv, "+++/"},
};

class Codec : public testing::TestWithParam<CodecCase>
{};

TEST_P(Codec, Encodes)
{
    EXPECT_EQ(Base64::encode(bytes(GetParam().data)), GetParam().text);
}

TEST_P(Codec, Decodes)
{
    EXPECT_EQ(Base64::decode(GetParam().text), bytes(GetParam().data));
}

INSTANTIATE_TEST_SUITE_P(Base64, Codec, testing::ValuesIn(codecCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct LenientCase
{
    const char* name;
    const char* text;
    std::string_view data;
};

void PrintTo(const LenientCase& row, std::ostream* out)
{
    *out << row.text;
}

const LenientCase lenientCases[] = {
    {"OneCharacter", "Q", "\x40\x00\x00"sv},      {"TwoCharacters", "QQ", "\x41\x00\x00"sv},
    {"ThreeCharacters", "QUI", "\x41\x42\x00"sv}, {"ShortGroupAfterAFullOne", "TWFuQQ", "Man\x41\x00\x00"sv},
    {"GoesOnAfterPadding", "QQ==QQ==", "AA"},     {"PaddingFirst", "=AAA", "\xFC\x00\x00"sv},
    {"PaddingSecond", "A=AA", "\x03\xF0\x00"sv},  {"PaddingThirdOnly", "AA=A", "\x00\xC0"sv},
    {"PaddingFourthOnly", "AAA=", "\x00\x00"sv},  {"OnlyPadding", "====", "\xFF"sv},
    {"OnePadding", "=", "\xFC\x00\x00"sv},        {"ThreePaddings", "===", "\xFF\xC0"sv},
    {"PaddingInShortGroup", "QQ=", "\x41\xC0"sv}, {"BitsUnderPaddingAreDropped", "QR==", "A"},
};

class LenientDecoding : public testing::TestWithParam<LenientCase>
{};

TEST_P(LenientDecoding, GivesBytes)
{
    EXPECT_EQ(Base64::decode(GetParam().text), bytes(GetParam().data));
}

INSTANTIATE_TEST_SUITE_P(Base64, LenientDecoding, testing::ValuesIn(lenientCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Base64Faults, MessageNamesCharacterAndPosition)
{
    EXPECT_EQ(messageOf("QU J"), "Invalid character ' ' at position 2.");
    EXPECT_EQ(messageOf("TWFu\n"), "Invalid character '\n' at position 4.");
    EXPECT_EQ(messageOf("\r"), "Invalid character '\r' at position 0.");
    EXPECT_EQ(messageOf("TWFuTWF*"), "Invalid character '*' at position 7.");
    EXPECT_EQ(messageOf("QQ==Q\t"), "Invalid character '\t' at position 5.");
}

TEST(Base64Faults, FirstFaultIsReported)
{
    EXPECT_EQ(messageOf("A-_!"), "Invalid character '-' at position 1.");
    EXPECT_EQ(messageOf("AAAA AAA\n"), "Invalid character ' ' at position 4.");
    EXPECT_EQ(messageOf("AA=*"), "Invalid character '*' at position 3.");
}

TEST(Base64Faults, EveryOtherByteIsAFaultInEveryPlace)
{
    for (int value = 0; value < 256; ++value) {
        const char c = static_cast<char>(value);
        const bool accepted = alphabet.find(c) != std::string_view::npos || c == '=';
        for (std::size_t place = 0; place < 4; ++place) {
            std::string text = "TWFuTWFu";
            text[4 + place] = c;
            const std::string message =
                std::string("Invalid character '") + c + "' at position " + std::to_string(4 + place) + ".";
            const std::string expected = accepted ? "decoded" : message.c_str();  // what() ends at a zero byte
            EXPECT_EQ(messageOf(text), expected);
            EXPECT_EQ(messageOf(text.substr(0, 5 + place)), expected);
        }
    }
}

TEST(Base64Faults, ExceptionHoldsItsMessage)
{
    const std::string message = "a message that is too long for the string's own room";
    const Base64::InvalidCharacterException exception(message);
    const Base64::InvalidCharacterException copy = exception;
    EXPECT_EQ(copy.what(), message);
    EXPECT_TRUE((std::is_base_of_v<std::exception, Base64::InvalidCharacterException>));
    EXPECT_FALSE((std::is_base_of_v<std::runtime_error, Base64::InvalidCharacterException>));
    EXPECT_FALSE((std::is_base_of_v<std::logic_error, Base64::InvalidCharacterException>));
}

TEST(Base64Symbols, EverySymbolHasItsValue)
{
    for (std::size_t value = 0; value < alphabet.size(); ++value) {
        const Bytes data{static_cast<unsigned char>(value << 2)};
        const std::string text = std::string(1, alphabet[value]) + "A==";
        EXPECT_EQ(Base64::encode(data), text);
        EXPECT_EQ(Base64::decode(text), data);
    }
}

// ---- random data against the rules, read slowly

Bytes decodeSlowly(const std::string& text)
{
    const auto value = [](char c) { return c == '=' ? 63 : static_cast<int>(alphabet.find(c)); };
    Bytes data;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const std::string group = (text.substr(i, 4) + "AAA").substr(0, 4);
        const int s[] = {value(group[0]), value(group[1]), value(group[2]), value(group[3])};
        data.push_back(static_cast<unsigned char>(s[0] << 2 | s[1] >> 4));
        if (group[2] != '=')
            data.push_back(static_cast<unsigned char>(s[1] << 4 | s[2] >> 2));
        if (group[3] != '=')
            data.push_back(static_cast<unsigned char>(s[2] << 6 | s[3]));
    }
    return data;
}

TEST(Base64Random, RoundTripsEveryLength)
{
    std::mt19937 random(20'260'103);
    for (std::size_t length = 0; length < 1000; ++length) {
        Bytes data(length);
        std::generate(data.begin(), data.end(), [&] { return static_cast<unsigned char>(random()); });
        const std::string text = Base64::encode(data);
        ASSERT_EQ(text.size(), (length + 2) / 3 * 4);
        ASSERT_EQ(text.find_first_not_of(std::string(alphabet) + "="), std::string::npos);
        ASSERT_EQ(Base64::decode(text), data);
    }
}

TEST(Base64Random, DecodesLikeTheRules)
{
    std::mt19937 random(20'260'104);
    for (int i = 0; i < 20'000; ++i) {
        std::string text(random() % 24, '=');
        for (char& c : text)
            c = random() % 4 == 0 ? '=' : alphabet[random() % alphabet.size()];
        ASSERT_EQ(Base64::decode(text), decodeSlowly(text)) << text;
    }
}

}  // namespace
