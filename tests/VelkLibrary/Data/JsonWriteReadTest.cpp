#include <VelkCommon/Json/json_writer.h>
#include <VelkLibrary/JsonReader.h>

#include "JsonOracle.h"

#include <gtest/gtest.h>

#include <random>
#include <variant>

// What json_writer writes, json::read() and another reader read.

namespace {

// The tree that reading a document gives.
std::string treeOf(const json_writer::Value& value);

std::string treeOf(const json_writer::Array& array)
{
    std::string parts;
    for (const json_writer::Value& element : array.elements())
        parts += (parts.empty() ? "" : ", ") + treeOf(element);
    return "[" + parts + "]";
}

std::string treeOf(const json_writer::Object& object)
{
    std::multimap<std::string, std::string> members;
    for (auto member = object.members().rbegin(); member != object.members().rend(); ++member)
        members.emplace(member->key, treeOf(member->value));
    std::string parts;
    for (const auto& [key, tree] : members)
        parts += (parts.empty() ? "" : ", ") + test::quoted(key) + ": " + tree;
    return "{" + parts + "}";
}

std::string treeOf(const json_writer::Value& value)
{
    const auto describe = [](const auto& content) -> std::string {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, json_writer::Object> || std::is_same_v<Content, json_writer::Array>)
            return treeOf(content);
        else
            return test::describe(std::make_shared<boost::any>(content));
    };
    return std::visit(describe, value.value);
}

class DocumentMaker
{
public:
    explicit DocumentMaker(unsigned seed) : random_(seed) {}

    json_writer::Object object(int levels)
    {
        json_writer::Object result;
        for (std::size_t i = below(6); i > 0; --i)
            addMember(result, levels);
        return result;
    }

private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    // Well-formed UTF-8 of any kind, often the same.
    std::string text()
    {
        static const std::string pieces[] = {
            "a",    "Filter",   " ",           "\xC3\xA9",   "\xE2\x82\xAC",       "\xF0\x9F\x98\x80",
            "\"",   "\\",       "/",           "\b\f\n\r\t", std::string(1, '\0'), "\x01\x1F",
            "\x7F", "\xC2\x85", "\xEF\xBF\xBF"};
        std::string result;
        for (std::size_t i = below(5); i > 0; --i)
            result += pieces[below(std::size(pieces))];
        return result;
    }

    double number()
    {
        static constexpr double numbers[] = {
            0.0, -0.0, 1.0, 0.1, -2.5, 1e300, 1e-300, 5e-324, 1.7976931348623157e308, 123456789.0, 1e21};
        return numbers[below(std::size(numbers))];
    }

    void addMember(json_writer::Object& object, int levels)
    {
        const std::string key = text();
        switch (below(levels > 0 ? 6 : 4)) {
            case 0:
                object.add_element(key, below(2) == 0);
                break;
            case 1:
                object.add_element(key, static_cast<int>(random_()));
                break;
            case 2:
                object.add_element(key, number());
                break;
            case 3:
                object.add_element(key, text());
                break;
            case 4:
                object.add_element(key, this->object(levels - 1));
                break;
            default:
                object.add_element(key, array(levels - 1));
        }
    }

    json_writer::Array array(int levels)
    {
        json_writer::Array result;
        for (std::size_t i = below(5); i > 0; --i) {
            const std::size_t kind = below(levels > 0 ? 4 : 2);
            if (kind < 2)
                result.add_element(text());
            else if (kind == 2)
                result.add_element(object(levels - 1));
            else
                result.add_element(array(levels - 1));
        }
        return result;
    }

    std::mt19937 random_;
};

TEST(JsonWriteRead, WhatIsWrittenReadsBackEqual)
{
    DocumentMaker maker(1);
    for (int i = 0; i < 2000; ++i) {
        const json_writer::Object document = maker.object(4);
        const std::string text = json_writer::to_text(document);
        ASSERT_EQ(test::describe(json::read(text)), treeOf(document)) << text;
    }
}

TEST(JsonWriteRead, AnotherReaderReadsTheSame)
{
    DocumentMaker maker(2);
    for (int i = 0; i < 2000; ++i) {
        const std::string text = json_writer::to_text(maker.object(4));
        ASSERT_TRUE(test::readByOther(text).is_object()) << text;
        ASSERT_EQ(test::disagreement(text, true), "") << text;
    }
}

// Random bytes are not text. Both readers accept what is written for them all the same, and writing that again
// gives the same document.
TEST(JsonWriteRead, EveryByteSequenceMakesADocument)
{
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) {
        std::string bytes;
        for (auto length = random() % 12; length > 0; --length)
            bytes += static_cast<char>(random() % 3 == 0 ? random() % 0x80 : 0x80 + random() % 0x80);
        json_writer::Object document;
        document.add_element("k" + bytes, bytes);
        const std::string text = json_writer::to_text(document);
        ASSERT_TRUE(test::readByOther(text).is_object()) << test::quoted(bytes);
        ASSERT_EQ(test::disagreement(text, true), "") << test::quoted(bytes);

        const auto root = json::read(text);
        const auto& member = *boost::any_cast<const test::JsonObject&>(*root).begin();
        json_writer::Object again;
        again.add_element(member.first, boost::any_cast<const std::string&>(*member.second));
        ASSERT_EQ(json_writer::to_text(again), text) << test::quoted(bytes);
    }
}

// A pair of escapes is read as two sequences of three bytes, which are not UTF-8. They are not lost.
TEST(JsonWriteRead, SurrogatePairsThatWereReadAreWrittenAsPairs)
{
    const auto root = json::read(R"({"a":"x\ud83d\ude00\udbff\udfffy"})");
    const auto& text =
        boost::any_cast<const std::string&>(*boost::any_cast<const test::JsonObject&>(*root).begin()->second);
    json_writer::Object document;
    document.add_element("a", text);
    const std::string written = json_writer::to_text(document);
    EXPECT_NE(written.find(R"("x\ud83d\ude00\udbff\udfffy")"), std::string::npos) << written;
    EXPECT_EQ(test::describe(json::read(written)), test::describe(root));
}

TEST(JsonWriteRead, TheDeepestDocumentIsRead)
{
    json_writer::Object document;
    for (int level = 1; level < json_writer::deepestLevel; ++level) {
        json_writer::Object outer;
        outer.add_element("a", std::move(document));
        document = std::move(outer);
    }
    EXPECT_FALSE(json::read(json_writer::to_text(document))->empty());
    json_writer::Object tooDeep;
    tooDeep.add_element("a", document);
    EXPECT_THROW(json_writer::to_text(tooDeep), std::length_error);
}

}  // namespace
