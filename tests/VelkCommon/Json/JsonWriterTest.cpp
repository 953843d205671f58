#include <VelkCommon/Json/json_writer.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <limits>
#include <ostream>
#include <stdexcept>

namespace {

using json_writer::Array;
using json_writer::Object;
using json_writer::to_text;
using testing::ElementsAre;

using namespace std::string_literals;

std::string textOf(const std::string& value)
{
    Object root;
    root.add_element("k", value);
    const std::string text = to_text(root);
    const std::string begin = "{\n    \"k\": ";
    EXPECT_TRUE(text.starts_with(begin) && text.ends_with("\n}\n")) << text;
    return text.substr(begin.size(), text.size() - begin.size() - 3);
}

// ---- Layout --------------------------------------------------------------------------------------

TEST(JsonWriter, WritesMembersInOrderOnLinesOfTheirOwn)
{
    Array ids;
    ids.add_element("a");
    ids.add_element("b");
    Object filter;
    filter.add_element("Name", "Kitchens");
    filter.add_element("Ids", ids);
    Object root;
    root.add_element("Current", 2);
    root.add_element("Filter", filter);
    root.add_element("Empty", Array());
    root.add_element("None", Object());
    EXPECT_EQ(to_text(root), R"({
    "Current": 2,
    "Filter": {
        "Name": "Kitchens",
        "Ids": [
            "a",
            "b"
        ]
    },
    "Empty": [],
    "None": {}
}
)");
}

TEST(JsonWriter, WritesAnEmptyDocument)
{
    EXPECT_EQ(to_text(Object()), "{}\n");
}

TEST(JsonWriter, WritesARepeatedKeyAgain)
{
    Object root;
    root.add_element("b", 1);
    root.add_element("a", 2);
    root.add_element("b", 3);
    EXPECT_EQ(to_text(root), "{\n    \"b\": 1,\n    \"a\": 2,\n    \"b\": 3\n}\n");
}

TEST(JsonWriter, WritesArraysOfAnything)
{
    Object object;
    object.add_element("a", true);
    Array inner;
    inner.add_element("x");
    Array array;
    array.add_element("text");
    array.add_element(object);
    array.add_element(inner);
    Object root;
    root.add_element("array", array);
    EXPECT_EQ(to_text(root), R"({
    "array": [
        "text",
        {
            "a": true
        },
        [
            "x"
        ]
    ]
}
)");
}

// ---- Values --------------------------------------------------------------------------------------

TEST(JsonWriter, KeepsTheTypesOfValues)
{
    Object root;
    root.add_element("literal", "text");
    root.add_element("string", std::string("text"));
    root.add_element("wide literal", U"t\u00E9xt");
    root.add_element("wide", std::u32string(U"\U0001F600"));
    root.add_element("true", true);
    root.add_element("false", false);
    root.add_element("int", -7);
    root.add_element("long", 7L);
    root.add_element("double", 2.5);
    std::vector<std::size_t> alternatives;
    for (const auto& member : root.members())
        alternatives.push_back(member.value.value.index());
    EXPECT_THAT(alternatives, ElementsAre(3, 3, 3, 3, 0, 0, 1, 1, 2));
    EXPECT_EQ(to_text(root),
              "{\n    \"literal\": \"text\",\n    \"string\": \"text\",\n    \"wide literal\": "
              "\"t\xC3\xA9xt\",\n    \"wide\": \"\xF0\x9F\x98\x80\",\n    \"true\": true,\n    "
              "\"false\": false,\n    \"int\": -7,\n    \"long\": 7,\n    \"double\": 2.5\n}\n");
}

TEST(JsonWriter, CopiesWhatIsAdded)
{
    Array ids;
    ids.add_element("a");
    Object object;
    object.add_element("ids", ids);
    Object root;
    root.add_element("object", object);
    ids.add_element("b");
    object.add_element("more", 1);
    EXPECT_EQ(root.members().size(), 1U);
    EXPECT_EQ(to_text(root), "{\n    \"object\": {\n        \"ids\": [\n            \"a\"\n        ]\n    }\n}\n");
    root.add_element("itself", root);
    EXPECT_EQ(std::get<Object>(root.members()[1].value.value).members().size(), 1U);
}

TEST(JsonWriter, IntegersHave32Bits)
{
    using Limits = std::numeric_limits<std::int32_t>;
    Object root;
    root.add_element("a", long{Limits::min()});
    root.add_element("b", long{Limits::max()});
    EXPECT_EQ(to_text(root), "{\n    \"a\": -2147483648,\n    \"b\": 2147483647\n}\n");
    if constexpr (sizeof(long) > 4) {
        EXPECT_THROW(root.add_element("c", long{Limits::max()} + 1), std::out_of_range);
        EXPECT_THROW(root.add_element("c", long{Limits::min()} - 1), std::out_of_range);
        EXPECT_EQ(root.members().size(), 2U);
    }
}

TEST(JsonWriter, RealNumbersStayReal)
{
    Object root;
    for (const double number : {0.0, -0.0, 1.0, 0.1, -2.5, 1e21, 1e-7, 123456789.0})
        root.add_element("n", number);
    std::string numbers;
    const std::string text = to_text(root);
    for (std::size_t at = text.find(": "); at != std::string::npos; at = text.find(": ", at + 1))
        numbers += text.substr(at + 2, text.find_first_of(",\n", at) - at - 2) + " ";
    EXPECT_EQ(numbers, "0.0 -0.0 1.0 0.1 -2.5 1e+21 1e-07 123456789.0 ");
}

TEST(JsonWriter, NumbersThatJsonDoesNotHaveAreRefused)
{
    Object root;
    EXPECT_THROW(root.add_element("n", std::numeric_limits<double>::infinity()), std::domain_error);
    EXPECT_THROW(root.add_element("n", -std::numeric_limits<double>::infinity()), std::domain_error);
    EXPECT_THROW(root.add_element("n", std::numeric_limits<double>::quiet_NaN()), std::domain_error);
    EXPECT_TRUE(root.members().empty());
}

// ---- Texts ---------------------------------------------------------------------------------------

struct TextCase
{
    const char* name;
    std::string text;
    const char* written;
};

void PrintTo(const TextCase& row, std::ostream* out)
{
    *out << row.written;
}

class JsonTexts : public testing::TestWithParam<TextCase>
{};

TEST_P(JsonTexts, AreWrittenAs)
{
    EXPECT_EQ(textOf(GetParam().text), GetParam().written);
}

TEST_P(JsonTexts, AreWrittenTheSameWayAsKeys)
{
    Object root;
    root.add_element(GetParam().text, 1);
    EXPECT_EQ(to_text(root), "{\n    " + std::string(GetParam().written) + ": 1\n}\n");
}

// clang-format off
const TextCase texts[] = {
    {"Empty",             "",                         "\"\""},
    {"Plain",             "Kitchens /~'",             "\"Kitchens /~'\""},
    {"QuoteAndBackslash", "a\"b\\c",                  R"("a\"b\\c")"},
    {"NamedControls",     "\b\f\n\r\t",               R"("\b\f\n\r\t")"},
    {"OtherControls",     "\x01\x0B\x1F",             R"("\u0001\u000b\u001f")"},
    {"Zero",              "a\0b"s,                    R"("a\u0000b")"},
    {"Delete",            "\x7F",                     "\"\x7F\""},
    {"Utf8",              "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\""},
    {"LineSeparators",    "\xE2\x80\xA8\xE2\x80\xA9", "\"\xE2\x80\xA8\xE2\x80\xA9\""},
    // Bytes that are not UTF-8
    {"LoneByte",          "a\xE9" "b",                "\"a\xEF\xBF\xBD" "b\""},
    {"Continuation",      "\x80",                     "\"\xEF\xBF\xBD\""},
    {"CutShort",          "\xE2\x82",                 "\"\xEF\xBF\xBD\""},
    {"CutShortInside",    "\xE2\x82\"",               "\"\xEF\xBF\xBD\\\"\""},
    {"Overlong",          "\xC0\xAF",                 "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"BeyondUnicode",     "\xF4\x90\x80\x80",         "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"NoUtf8Byte",        "\xFF",                     "\"\xEF\xBF\xBD\""},
    {"HighSurrogate",     "\xED\xA0\xBD",             "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"LowSurrogate",      "\xED\xB8\x80",             "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"SurrogatesApart",   "\xED\xA0\xBD-\xED\xB8\x80",
                          "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD-\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"SurrogatePair",     "\xED\xA0\xBD\xED\xB8\x80", R"("\ud83d\ude00")"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(JsonWriter, JsonTexts, testing::ValuesIn(texts),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(JsonWriter, WideTextsThatAreNoUnicodeAreReplaced)
{
    Object root;
    root.add_element("k", std::u32string{U'a', char32_t{0xD83D}, char32_t{0x110000}});
    EXPECT_EQ(to_text(root), "{\n    \"k\": \"a\xEF\xBF\xBD\xEF\xBF\xBD\"\n}\n");
}

// ---- Files ---------------------------------------------------------------------------------------

class JsonFile : public testing::Test
{
protected:
    static Object document(const std::string& value)
    {
        Object root;
        root.add_element("k", value);
        return root;
    }

    test::TemporaryFolder folder_;
    fileString path_ = folder_ / U"k\u00FCche.json";
};

TEST_F(JsonFile, HoldsTheText)
{
    json_writer::write_file(path_.utf8(), document("a"));
    EXPECT_EQ(test::readFile(path_), to_text(document("a")));
    EXPECT_EQ(test::listFolder(folder_.path()).size(), 1U);
}

TEST_F(JsonFile, IsReplaced)
{
    test::writeFile(path_, std::string(100'000, 'x'));
    json_writer::write_file(path_.utf8(), document("b"));
    EXPECT_EQ(test::readFile(path_), to_text(document("b")));
    EXPECT_EQ(test::listFolder(folder_.path()).size(), 1U);
}

TEST_F(JsonFile, WhereNoneCanBeThrows)
{
    EXPECT_THROW(json_writer::write_file((folder_ / U"missing/file").utf8(), document("a")), std::runtime_error);
    EXPECT_THROW(json_writer::write_file(folder_.path().utf8(), document("a")), std::runtime_error);
    EXPECT_THROW(json_writer::write_file("", document("a")), std::runtime_error);
    EXPECT_TRUE(test::listFolder(folder_.path()).empty());
}

TEST_F(JsonFile, ThatCannotBeMadeLeavesTheOldOne)
{
    test::writeFile(path_, "old");
    Object tooDeep;
    for (int level = 0; level < json_writer::deepestLevel; ++level) {
        Object outer;
        outer.add_element("a", tooDeep);
        tooDeep = std::move(outer);
    }
    EXPECT_THROW(json_writer::write_file(path_.utf8(), tooDeep), std::length_error);
    EXPECT_EQ(test::readFile(path_), "old");
}

}  // namespace
