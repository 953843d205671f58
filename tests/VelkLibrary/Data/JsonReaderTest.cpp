#include <VelkLibrary/JsonReader.h>

#include "JsonTree.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <list>
#include <ostream>
#include <random>
#include <vector>

namespace {

using test::describe;

std::string read(std::string_view text)
{
    return describe(json::read(text));
}

struct ReadCase
{
    const char* name;
    std::string_view text;
    const char* tree;  // "nothing" also for what is not a document
};

void PrintTo(const ReadCase& row, std::ostream* out)
{
    *out << row.text;
}

class JsonDocuments : public testing::TestWithParam<ReadCase>
{};

TEST_P(JsonDocuments, AreReadAs)
{
    EXPECT_EQ(read(GetParam().text), GetParam().tree);
}

using namespace std::string_view_literals;

// clang-format off
constexpr ReadCase documents[] = {
    // Values at the top level
    {"Integer",            "12",                     "12"},
    {"String",             "\"a\"",                  "'a'"},
    {"True",               "true",                   "true"},
    {"False",              "false",                  "false"},
    {"Null",               "null",                   "nothing"},
    {"EmptyArray",         "[]",                     "[]"},
    {"EmptyObject",        "{}",                     "{}"},
    // Integers
    {"Negative",           "-12",                    "-12"},
    {"WithPlus",           "+12",                    "12"},
    {"LeadingZeros",       "007",                    "7"},
    {"ManyLeadingZeros",   "0000000000000000000001", "1"},
    {"MinusZero",          "-0",                     "0"},
    {"Largest",            "2147483647",             "2147483647"},
    {"Smallest",           "-2147483648",            "-2147483648"},
    // Real numbers
    {"Point",              "12.0",                   "12d"},
    {"Exponent",           "1e3",                    "1000d"},
    {"CapitalExponent",    "1E3",                    "1000d"},
    {"SignedExponents",    "[1e+3, 1e-3]",           "[1000d, 0.001d]"},
    {"LeadingPoint",       ".5",                     "0.5d"},
    {"TrailingPoint",      "5.",                     "5d"},
    {"PointAndExponent",   "5.e2",                   "500d"},
    {"SignedReals",        "[-.5, +.5, +1.5]",       "[-0.5d, 0.5d, 1.5d]"},
    {"Everything",         "-12.75e-1",              "-1.2749999999999999d"},
    {"RoundedToNearest",   "0.1",                    "0.10000000000000001d"},
    {"LongFraction",       "0.123456789012345678901234567890123456789", "0.12345678901234568d"},
    {"WideReal",           "4294967296.0",           "4294967296d"},
    {"MinusZeroReal",      "-0.0",                   "-0d"},
    {"TooSmall",           "[1e-999, 0.0000001e-400, 0e999, -1e-999]", "[0d, 0d, 0d, -0d]"},
    {"TooLarge",           "[1e999, -1e999, 1e99999999999999999999]",  "[infd, -infd, infd]"},
    {"SmallExponent",      "1e-99999999999999999999", "0d"},
    // Strings
    {"EmptyString",        "\"\"",                   "''"},
    {"Utf8",               "\"\xC3\xA9\"",           "'<c3><a9>'"},
    {"NotUtf8",            "\"\xFF\xC3\"",           "'<ff><c3>'"},
    {"RawControls",        "\"a\nb\tc\x01\"",        "'a<0a>b<09>c<01>'"},
    {"RawZero",            "\"a\0b\""sv,             "'a<00>b'"},
    {"ShortEscapes",       R"("\b\f\n\r\t")",        "'<08><0c><0a><0d><09>'"},
    {"CopiedEscapes",      R"("\"\\\/")",            "'\"\\/'"},
    {"OneByteUnicode",     R"("\u0041\u007f")",      "'A<7f>'"},
    {"ZeroUnicode",        R"("\u0000")",            "'<00>'"},
    {"TwoByteUnicode",     R"("\u00e9\u07FF")",      "'<c3><a9><df><bf>'"},
    {"ThreeByteUnicode",   R"("\u0800\u20AC\uffff")", "'<e0><a0><80><e2><82><ac><ef><bf><bf>'"},
    {"SurrogatePair",      R"("\ud83d\ude00")",      "'<ed><a0><bd><ed><b8><80>'"},
    {"LoneSurrogate",      R"("\udc00")",            "'<ed><b0><80>'"},
    {"DigitsBehindUnicode", R"("\u00411")",          "'A1'"},
    {"BracketsInStrings",  "[\"[[{\", \"]\"]",       "['[[{', ']']"},
    {"BlanksInStrings",    "\"  a  \"",              "'  a  '"},
    // Arrays
    {"InOrder",            "[1, 2, 3]",              "[1, 2, 3]"},
    {"NullInArray",        "[null, 1]",              "[nothing, 1]"},
    {"Mixed",              "[1, 1.0, \"1\", true, null, [], {}]", "[1, 1d, '1', true, nothing, [], {}]"},
    {"Nested",             "[[1, [2]], [], [[3]]]",  "[[1, [2]], [], [[3]]]"},
    // Objects
    {"KeysByByte",         R"({"b":1,"a":2,"B":3,"":4})", "{'': 4, 'B': 3, 'a': 2, 'b': 1}"},
    {"HighBytesLast",      "{\"\xC3\xA9\":1,\"z\":2}",    "{'z': 2, '<c3><a9>': 1}"},
    {"EqualKeysReversed",  R"({"a":1,"a":2})",       "{'a': 2, 'a': 1}"},
    {"EqualKeysAmongOthers", R"({"b":0,"a":1,"c":0,"a":2,"b":1,"a":3})",
                             "{'a': 3, 'a': 2, 'a': 1, 'b': 1, 'b': 0, 'c': 0}"},
    {"EscapedKey",         R"({"\u0061\n":1})",      "{'a<0a>': 1}"},
    {"NestedObjects",      R"({"a":{"b":{"a":1}},"c":[{"d":null}]})",
                             "{'a': {'b': {'a': 1}}, 'c': [{'d': nothing}]}"},
    // White space
    {"AroundTokens",       " \t\r\n\v\f{ \"a\" : [ 1 , 2 ] , \"b\" : null } \t\r\n\v\f", "{'a': [1, 2], 'b': nothing}"},
    {"None",               R"({"a":[1,2],"b":null})", "{'a': [1, 2], 'b': nothing}"},
    {"LineBreaksAtTheEnd", "{}\r\n\n",               "{}"},
};

constexpr ReadCase noDocuments[] = {
    {"Empty",               "",                 "nothing"},
    {"OnlyBlanks",          " \t\n ",           "nothing"},
    {"TrailingGarbage",     "{} x",             "nothing"},
    {"TwoValues",           "1 2",              "nothing"},
    {"TwoObjects",          "{}{}",             "nothing"},
    {"ZeroByteBehind",      "{}\0"sv,           "nothing"},
    {"ByteOrderMark",       "\xEF\xBB\xBF{}",   "nothing"},
    {"NoBreakSpace",        "\xC2\xA0{}",       "nothing"},
    // Numbers
    {"TooWide",             "4294967296",       "nothing"},
    {"JustTooWide",         "2147483648",       "nothing"},
    {"JustTooSmall",        "-2147483649",      "nothing"},
    {"TooWideInside",       "[1, {\"a\": 99999999999999999999}]", "nothing"},
    {"NoDigits",            "-",                "nothing"},
    {"TwoSigns",            "+-1",              "nothing"},
    {"BlankBehindSign",     "- 1",              "nothing"},
    {"OnlyPoint",           ".",                "nothing"},
    {"PointAndNoDigits",    ".e1",              "nothing"},
    {"NoExponent",          "1e",               "nothing"},
    {"SignedNoExponent",    "1.5e+",            "nothing"},
    {"TwoPoints",           "1.2.3",            "nothing"},
    {"Hexadecimal",         "0x10",             "nothing"},
    {"Infinity",            "inf",              "nothing"},
    {"NotANumber",          "nan",              "nothing"},
    {"Separated",           "1,000",            "nothing"},
    // Words
    {"CapitalTrue",         "True",             "nothing"},
    {"HalfWord",            "tru",              "nothing"},
    {"LongWord",            "trueish",          "nothing"},
    {"SplitWord",           "t rue",            "nothing"},
    // Strings
    {"Open",                "\"a",              "nothing"},
    {"OpenBehindEscape",    "\"a\\\"",          "nothing"},
    {"LoneBackslash",       "\"\\",             "nothing"},
    {"UnknownEscape",       R"("\x41")",        "nothing"},
    {"SingleQuoteEscape",   R"("\'")",          "nothing"},
    {"ThreeDigits",         R"("\u00e")",       "nothing"},
    {"NotHexadecimal",      R"("\u00g1")",      "nothing"},
    {"UnicodeAtTheEnd",     R"("\u00e9)",       "nothing"},
    {"CapitalU",            R"("\U00e9")",      "nothing"},
    {"SingleQuotes",        "'a'",              "nothing"},
    // Arrays and objects
    {"OpenArray",           "[1, 2",            "nothing"},
    {"ClosedOnly",          "]",                "nothing"},
    {"ClosedTwice",         "[]]",              "nothing"},
    {"WrongBracket",        "[1}",              "nothing"},
    {"Crossed",             "[{]}",             "nothing"},
    {"TrailingComma",       "[1,]",             "nothing"},
    {"OnlyComma",           "[,]",              "nothing"},
    {"LeadingComma",        "[,1]",             "nothing"},
    {"NoComma",             "[1 2]",            "nothing"},
    {"TrailingCommaObject", R"({"a":1,})",      "nothing"},
    {"NoValue",             R"({"a":})",        "nothing"},
    {"NoColon",             R"({"a" 1})",       "nothing"},
    {"NoKey",               R"({1:1})",         "nothing"},
    {"BareKey",             R"({a:1})",         "nothing"},
    {"OnlyKey",             R"({"a"})",         "nothing"},
    {"Comment",             "[1] // one",       "nothing"},
    {"FaultFarInside",      R"({"a":[{"b":[1,2,{"c":tru}]}]})", "nothing"},
};
// clang-format on

std::string nameOf(const testing::TestParamInfo<ReadCase>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Right, JsonDocuments, testing::ValuesIn(documents), nameOf);
INSTANTIATE_TEST_SUITE_P(Wrong, JsonDocuments, testing::ValuesIn(noDocuments), nameOf);

// ---- The tree ------------------------------------------------------------------------------------

TEST(JsonReader, WrongCastsThrow)
{
    EXPECT_THROW(boost::any_cast<long>(*json::read("1")), boost::bad_any_cast);
    EXPECT_THROW(boost::any_cast<double>(*json::read("1")), boost::bad_any_cast);
    EXPECT_THROW(boost::any_cast<int>(*json::read("1.0")), boost::bad_any_cast);
    EXPECT_THROW(boost::any_cast<std::string>(*json::read("null")), boost::bad_any_cast);
    EXPECT_EQ(boost::any_cast<int>(*json::read("1")), 1);
}

TEST(JsonReader, AMemberFoundByKeyIsTheLastInTheText)
{
    const auto root = json::read(R"({"a":1,"b":0,"a":2,"a":3})");
    const auto& object = boost::any_cast<const test::JsonObject&>(*root);
    EXPECT_EQ(boost::any_cast<int>(*object.find("a")->second), 3);
    EXPECT_EQ(object.count("a"), 3U);
}

TEST(JsonReader, ReadsFromIterators)
{
    const std::vector<unsigned char> bytes{'[', '1', ']'};
    EXPECT_EQ(describe(json::read(bytes.begin(), bytes.end())), "[1]");
    const std::string text = "x[2]x";
    EXPECT_EQ(describe(json::read(text.begin() + 1, text.end() - 1)), "[2]");
    EXPECT_EQ(describe(json::read(std::string_view())), "nothing");
}

// With a number at the very end, the reader must not look at what lies behind the text.
TEST(JsonReader, StopsAtTheEndOfTheText)
{
    const std::string_view text = "123.5e2";
    EXPECT_EQ(read(text.substr(0, 2)), "12");
    EXPECT_EQ(read(text.substr(0, 4)), "123d");
    EXPECT_EQ(read(text.substr(0, 5)), "123.5d");
    EXPECT_EQ(read(text.substr(0, 6)), "nothing");
    EXPECT_EQ(read(std::string_view("true").substr(0, 3)), "nothing");
}

// Strings are looked at in blocks, so what ends them stands at each place of a block here.
TEST(JsonReader, FindsQuotesAndEscapesWhereverTheyStand)
{
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string before(length, 'x');
        for (const std::size_t more : {0U, 1U, 15U, 16U, 17U}) {
            const std::string behind(more, 'y');
            EXPECT_EQ(read('"' + before + behind + '"'), '\'' + before + behind + '\'');
            EXPECT_EQ(read('"' + before + "\\/" + behind + '"'), '\'' + before + '/' + behind + '\'');
            EXPECT_EQ(read('"' + before + "\"y" + behind), "nothing");
            EXPECT_EQ(read('"' + before + "\\x" + behind + '"'), "nothing");
        }
        EXPECT_EQ(read('"' + before), "nothing");
        EXPECT_EQ(read('"' + before + '\\'), "nothing");
    }
}

TEST(JsonReader, SortsEmptyKeysAndBytesBeyondAscii)
{
    EXPECT_EQ(read("{\"\":1,\"\xC3\xA9\":2,\"z\":3,\"\":4}"), "{'': 4, '': 1, 'z': 3, '<c3><a9>': 2}");
}

// Members of many objects, in any order and with many equal keys, compared with a plain model.
TEST(JsonReader, KeepsTheOrderOfMembersWhateverTheirKeysAre)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::string text = "{";
        std::multimap<std::string, int> model;
        std::vector<std::pair<std::string, int>> members;
        for (std::size_t i = 0, count = random() % 40; i < count; ++i) {
            members.emplace_back(std::string(random() % 3, 'k') + std::to_string(random() % 8), static_cast<int>(i));
            text += (i == 0 ? "\"" : ",\"") + members.back().first + "\":" + std::to_string(i);
        }
        text += "}";
        for (auto member = members.rbegin(); member != members.rend(); ++member)
            model.insert(*member);
        std::string expected;
        for (const auto& [key, value] : model)
            expected += (expected.empty() ? "" : ", ") + test::quoted(key) + ": " + std::to_string(value);
        ASSERT_EQ(read(text), "{" + expected + "}") << text;
    }
}

// A decimal comma in the process's locale changes nothing. Not every machine has such a locale.
TEST(JsonReader, DoesNotDependOnTheLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* const locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        const auto root = json::read("[1.5, \"\xC2\x85\"]");
        std::setlocale(LC_ALL, before.c_str());
        EXPECT_EQ(describe(root), "[1.5d, '<c2><85>']") << locale;
    }
}

// ---- The grammar and its actions -----------------------------------------------------------------

class JsonGrammar : public testing::Test
{
protected:
    using Grammar = json::grammar<char>;

    bool parse(std::string_view text)
    {
        const char* first = text.data();
        const bool parsed = Grammar(values_).parse(first, text.data() + text.size());
        rest_.assign(first, text.data() + text.size());
        return parsed;
    }

    void pushString(std::string_view token)
    {
        Grammar::push_string{values_}(token.data(), token.data() + token.size());
    }

    void pushMember(std::string_view key, int value)
    {
        pushString(key);
        Grammar::push_int{values_}(value);
        Grammar::create_pair{values_}(nullptr, nullptr);
    }

    Grammar::stack_type values_;
    std::string rest_;
};

TEST_F(JsonGrammar, StopsBehindTheValue)
{
    EXPECT_TRUE(parse("  [1] [2]"));
    EXPECT_EQ(rest_, " [2]");
    ASSERT_EQ(values_.size(), 1U);
    EXPECT_EQ(describe(values_.back()), "[1]");
}

TEST_F(JsonGrammar, PushesAboveWhatIsOnTheStack)
{
    EXPECT_TRUE(parse("1"));
    EXPECT_TRUE(parse("{\"a\":[2]}"));
    ASSERT_EQ(values_.size(), 2U);
    EXPECT_EQ(describe(values_[0]), "1");
    EXPECT_EQ(describe(values_[1]), "{'a': [2]}");
}

TEST_F(JsonGrammar, RefusesWhatIsNotAValue)
{
    EXPECT_FALSE(parse("[1,"));
    EXPECT_FALSE(parse(""));
}

TEST_F(JsonGrammar, ActionsPushValues)
{
    pushString(R"("a\u00e9")");
    Grammar::push_int{values_}(-7);
    Grammar::push_double{values_}(2.5);
    for (const std::string_view word : {"true", "false"})
        Grammar::push_boolean{values_}(word.data(), word.data() + word.size());
    Grammar::push_null{values_}(nullptr, nullptr);
    std::string all;
    for (const auto& value : values_)
        all += describe(value) + " ";
    EXPECT_EQ(all, "'a<c3><a9>' -7 2.5d true false nothing ");
}

TEST_F(JsonGrammar, ActionsMarkWhatIsOpen)
{
    Grammar::begin_array{values_}('[');
    Grammar::begin_object{values_}('{');
    ASSERT_EQ(values_.size(), 2U);
    EXPECT_NE(boost::any_cast<Grammar::array_delimiter>(values_[0].get()), nullptr);
    EXPECT_NE(boost::any_cast<Grammar::object_delimiter>(values_[1].get()), nullptr);
}

TEST_F(JsonGrammar, ActionsReduceArrays)
{
    Grammar::push_int{values_}(0);
    Grammar::begin_array{values_}('[');
    Grammar::push_int{values_}(1);
    Grammar::begin_array{values_}('[');
    Grammar::end_array{values_}(']');
    Grammar::push_int{values_}(2);
    Grammar::end_array{values_}(']');
    ASSERT_EQ(values_.size(), 2U);
    EXPECT_EQ(describe(values_.back()), "[1, [], 2]");
}

TEST_F(JsonGrammar, ActionsReducePairsAndObjects)
{
    Grammar::begin_object{values_}('{');
    pushMember("\"a\"", 1);
    ASSERT_EQ(values_.size(), 2U);
    const auto& pair = boost::any_cast<const std::pair<std::string, std::shared_ptr<boost::any>>&>(*values_.back());
    EXPECT_EQ(pair.first, "a");
    EXPECT_EQ(describe(pair.second), "1");
    pushMember("\"b\"", 2);
    pushMember("\"a\"", 3);
    Grammar::end_object{values_}('}');
    ASSERT_EQ(values_.size(), 1U);
    EXPECT_EQ(describe(values_.back()), "{'a': 3, 'a': 1, 'b': 2}");
}

// Does the same with nodes that are used again.
TEST_F(JsonGrammar, SpareNodesAreUsedAgain)
{
    Grammar::spare_nodes spares;
    for (int round = 0; round < 3; ++round) {
        Grammar::begin_object{values_, &spares}('{');
        for (const std::string_view key : {"\"key\"", "\"other\""}) {
            Grammar::push_string{values_, &spares}(key.data(), key.data() + key.size());
            Grammar::push_int{values_, &spares}(round);
            Grammar::create_pair{values_, &spares}(nullptr, nullptr);
        }
        Grammar::end_object{values_, &spares}('}');
        EXPECT_EQ(spares.strings.size(), 1U);
        EXPECT_EQ(spares.pairs.size(), 2U);
    }
    ASSERT_EQ(values_.size(), 3U);
    EXPECT_EQ(describe(values_[0]), "{'key': 0, 'other': 0}");
    EXPECT_EQ(describe(values_[2]), "{'key': 2, 'other': 2}");
}

}  // namespace
