#include <VelkLibrary/JsonReader.h>

#include "JsonOracle.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

namespace {

// Texts that every reader of JSON accepts.
class DocumentMaker
{
public:
    explicit DocumentMaker(unsigned seed) : random_(seed) {}

    std::string document() { return blanks() + container(4) + blanks(); }

    // A document with one byte changed, removed or added.
    std::string damaged()
    {
        constexpr std::string_view bytes = "[]{}\",:\\/.+-eE0129utfn \n\t\0\x7F\x80\xC3\xFF";
        std::string text = document();
        const std::size_t place = below(text.size());
        const char byte = bytes[below(bytes.size())];
        switch (below(3)) {
            case 0:
                text[place] = byte;
                break;
            case 1:
                text.erase(place, 1 + below(3));
                break;
            default:
                text.insert(place, 1, byte);
        }
        return text;
    }

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    template <std::size_t Size>
    std::string oneOf(const char* const (&choices)[Size])
    {
        return choices[below(Size)];
    }

    std::string blanks()
    {
        static constexpr const char* choices[] = {"", "", "", " ", "\n", "\t", "\r\n", "  \n"};
        return oneOf(choices);
    }

    std::string number()
    {
        static constexpr const char* integers[] = {"0", "7", "12", "2147483647", "1000000"};
        static constexpr const char* fractions[] = {"", "", ".0", ".5", ".25", ".1", ".000001", ".3333333333333333333"};
        static constexpr const char* exponents[] = {"", "", "e1", "E2", "e+3", "e-10", "E-300"};
        const std::string sign = below(3) == 0 ? "-" : "";
        return sign + oneOf(integers) + oneOf(fractions) + oneOf(exponents);
    }

    std::string string()
    {
        static constexpr const char* pieces[] = {
            "a",    "Kitchen", " ",       "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\\n",         "\\\"",
            "\\\\", "\\/",     "\\u00e9", "\\u0000",  "\\u20AC",      "\\ud83d\\ude00",   "\\b\\f\\r\\t"};
        std::string text = "\"";
        for (std::size_t i = below(6); i > 0; --i)
            text += oneOf(pieces);
        return text + "\"";
    }

    std::string container(int levels)
    {
        const bool isArray = below(2) == 0;
        std::string text = isArray ? "[" : "{";
        for (std::size_t i = 0, count = below(6); i < count; ++i) {
            text += (i > 0 ? "," : "") + blanks();
            // The keys differ, because readers keep different ones of several equal keys.
            if (!isArray)
                text += "\"" + std::to_string(i) + string().substr(1) + blanks() + ":" + blanks();
            text += value(levels) + blanks();
        }
        return text + (isArray ? "]" : "}");
    }

    std::string value(int levels)
    {
        static constexpr const char* words[] = {"true", "false", "null"};
        switch (below(levels > 0 ? 6 : 4)) {
            case 0:
                return oneOf(words);
            case 1:
                return number();
            case 2:
            case 3:
                return string();
            default:
                return container(levels - 1);
        }
    }

    std::mt19937 random_;
};

TEST(JsonDifferential, DocumentsAreReadAsAnotherReaderDoes)
{
    DocumentMaker maker(1);
    for (int i = 0; i < 3000; ++i) {
        const std::string text = maker.document();
        ASSERT_FALSE(test::readByOther(text).is_discarded()) << text;
        ASSERT_FALSE(json::read(text)->empty()) << text;
        ASSERT_EQ(test::disagreement(text, true), "") << text;
    }
}

TEST(JsonDifferential, DamagedDocumentsAreReadAsAnotherReaderDoesOrRefused)
{
    DocumentMaker maker(2);
    int refused = 0;
    for (int i = 0; i < 5000; ++i) {
        const std::string text = maker.damaged();
        ASSERT_EQ(test::disagreement(text, true), "") << text;
        refused += json::read(text)->empty() ? 1 : 0;
    }
    EXPECT_GT(refused, 1000);
}

// A prefix of a document that leaves out more than trailing blanks is not a document.
TEST(JsonDifferential, PrefixesAreRefused)
{
    DocumentMaker maker(3);
    for (int i = 0; i < 100; ++i) {
        std::string text = maker.document();
        text.erase(text.find_last_of("]}") + 1);
        for (std::size_t size = 0; size < text.size(); ++size)
            ASSERT_TRUE(json::read(std::string_view(text).substr(0, size))->empty()) << text.substr(0, size);
    }
}

}  // namespace
