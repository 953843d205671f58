#include "JsonPeers.h"

#include <VelkLibrary/JsonReader.h>

#define BOOST_SPIRIT_THREADSAFE
#include <boost/spirit/include/classic_chset.hpp>
#include <boost/spirit/include/classic_core.hpp>

#include <QJsonDocument>

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <simdjson.h>

#include <cstdlib>
#include <type_traits>
#include <variant>

namespace bench {
namespace {

namespace spirit = boost::spirit::classic;

using Grammar = json::grammar<char>;
using Node = Grammar::value_type;

void require(bool done)
{
    if (!done)
        std::abort();
}

// ---- Our tree by Spirit's own parsers ------------------------------------------------------------

class SpiritRules
{
public:
    explicit SpiritRules(Grammar::stack_type& values)
    {
        using namespace spirit;
        const auto escape = ch_p('\\') >> (chset_p("\"\\/bfnrt") | (ch_p('u') >> repeated));
        string_ = lexeme_d[ch_p('"') >> *(~chset_p("\"\\") | escape) >> '"'];
        value_ = string_[Grammar::push_string(values)] | strict_real_p[Grammar::push_double(values)] |
                 int_p[Grammar::push_int(values)] | object_ | array_ |
                 (str_p("true") | "false")[Grammar::push_boolean(values)] | str_p("null")[Grammar::push_null(values)];
        object_ = ch_p('{')[Grammar::begin_object(values)] >> !(pair_ % ',') >> ch_p('}')[Grammar::end_object(values)];
        pair_ = (string_[Grammar::push_string(values)] >> ':' >> value_)[Grammar::create_pair(values)];
        array_ = ch_p('[')[Grammar::begin_array(values)] >> !(value_ % ',') >> ch_p(']')[Grammar::end_array(values)];
    }

    bool parse(const std::string& text) const
    {
        return spirit::parse(text.data(), text.data() + text.size(), value_, spirit::space_p).hit;
    }

private:
    using Rule = spirit::rule<spirit::phrase_scanner_t>;

    // Written out, so that the header for repetitions is not needed.
    static inline const auto repeated = spirit::xdigit_p >> spirit::xdigit_p >> spirit::xdigit_p >> spirit::xdigit_p;

    Rule string_;
    Rule value_;
    Rule object_;
    Rule pair_;
    Rule array_;
};

void readBySpirit(const std::string& text)
{
    Grammar::stack_type values;
    require(SpiritRules(values).parse(text));
}

// ---- Our tree by hand ----------------------------------------------------------------------------

class HandReader
{
public:
    explicit HandReader(const std::string& text) : place_(text.c_str()) {}

    Node value()
    {
        skipBlanks();
        switch (*place_) {
            case '"':
                return std::make_shared<boost::any>(string());
            case '{':
                return object();
            case '[':
                return array();
            case 't':
                place_ += 4;
                return std::make_shared<boost::any>(true);
            case 'f':
                place_ += 5;
                return std::make_shared<boost::any>(false);
            case 'n':
                place_ += 4;
                return std::make_shared<boost::any>();
            default:
                return number();
        }
    }

private:
    void skipBlanks()
    {
        while (*place_ == ' ' || (*place_ >= '\t' && *place_ <= '\r'))
            ++place_;
    }

    bool take(char character)
    {
        skipBlanks();
        if (*place_ != character)
            return false;
        ++place_;
        return true;
    }

    std::string string()
    {
        const char* const begin = ++place_;
        while (*place_ != '"' && *place_ != '\\')
            ++place_;
        std::string text(begin, place_);
        while (*place_ != '"') {
            place_ += *place_ == '\\' ? 1 : 0;
            text += *place_++;
        }
        ++place_;
        return text;
    }

    Node number()
    {
        char* end = nullptr;
        const long integer = std::strtol(place_, &end, 10);
        const bool real = *end == '.' || *end == 'e' || *end == 'E';
        const double value = real ? std::strtod(place_, &end) : 0;
        require(end != place_);
        place_ = end;
        return real ? std::make_shared<boost::any>(value) : std::make_shared<boost::any>(static_cast<int>(integer));
    }

    Node object()
    {
        Grammar::object_type members;
        ++place_;
        if (!take('}'))
            do {
                skipBlanks();
                std::string key = string();
                require(take(':'));
                members.emplace(std::move(key), value());
            } while (take(',') || !take('}'));
        return std::make_shared<boost::any>(std::move(members));
    }

    Node array()
    {
        Grammar::array_type elements;
        ++place_;
        if (!take(']'))
            do
                elements.push_back(value());
            while (take(',') || !take(']'));
        return std::make_shared<boost::any>(std::move(elements));
    }

    const char* place_;
};

// ---- RapidJSON's writer --------------------------------------------------------------------------

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void write(Writer& writer, const json_writer::Value& value);

void write(Writer& writer, const json_writer::Object& object)
{
    writer.StartObject();
    for (const json_writer::Member& member : object.members()) {
        writer.Key(member.key.data(), static_cast<rapidjson::SizeType>(member.key.size()));
        write(writer, member.value);
    }
    writer.EndObject();
}

void write(Writer& writer, const json_writer::Array& array)
{
    writer.StartArray();
    for (const json_writer::Value& element : array.elements())
        write(writer, element);
    writer.EndArray();
}

void write(Writer& writer, const json_writer::Value& value)
{
    const auto writeAny = [&writer](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, bool>)
            writer.Bool(content);
        else if constexpr (std::is_same_v<Content, int>)
            writer.Int(content);
        else if constexpr (std::is_same_v<Content, double>)
            writer.Double(content);
        else if constexpr (std::is_same_v<Content, std::string>)
            writer.String(content.data(), static_cast<rapidjson::SizeType>(content.size()));
        else
            write(writer, content);
    };
    std::visit(writeAny, value.value);
}

}  // namespace

std::vector<JsonReader> jsonReaders()
{
    return {
        {"own", [](const std::string& text) { require(!json::read(text)->empty()); }},
        {"Spirit", readBySpirit},
        {"by hand", [](const std::string& text) { require(!HandReader(text).value()->empty()); }},
        {"nlohmann", [](const std::string& text) { require(nlohmann::json::parse(text).is_object()); }},
        {"QJsonDocument",
         [](const std::string& text) {
             const QByteArray bytes = QByteArray::fromRawData(text.data(), static_cast<int>(text.size()));
             require(QJsonDocument::fromJson(bytes).isObject());
         }},
        {"RapidJSON",
         [](const std::string& text) {
             rapidjson::Document document;
             require(!document.Parse(text.data(), text.size()).HasParseError());
         }},
        {"simdjson",
         [](const std::string& text) {
             simdjson::dom::parser parser;
             require(parser.parse(text).error() == simdjson::SUCCESS);
         }},
    };
}

std::string writtenByRapidJson(const json_writer::Object& root)
{
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    write(writer, root);
    return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace bench
