#include <VelkLibrary/JsonReader.h>

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/Hexadecimal.h>
#include <VelkCommon/detail/Utf8.h>

#define BOOST_SPIRIT_THREADSAFE
#include <boost/spirit/include/classic_core.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <system_error>

namespace json {
namespace {

namespace spirit = boost::spirit::classic;

// ---- Characters, independent of the locale -------------------------------------------------------

constexpr bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr bool isSign(char character)
{
    return character == '+' || character == '-';
}

const char* skipDigits(const char* first, const char* last)
{
    return std::find_if_not(first, last, Velk::Ascii::isDigit<char>);
}

// ---- Strings -------------------------------------------------------------------------------------

constexpr std::size_t unicodeDigits = 4;

// The end of the escape that begins at `first`, behind its backslash; null when this is not an escape.
const char* endOfEscape(const char* first, const char* last)
{
    constexpr std::string_view letters = "\"\\/bfnrt";
    if (first == last)
        return nullptr;
    if (letters.find(*first) != std::string_view::npos)
        return first + 1;
    if (*first != 'u' || last - first <= static_cast<std::ptrdiff_t>(unicodeDigits))
        return nullptr;
    const char* const end = first + 1 + unicodeDigits;
    return std::all_of(first + 1, end, [](char digit) { return Velk::Hexadecimal::valueOf(digit) >= 0; }) ? end
                                                                                                          : nullptr;
}

// The end of the string that begins at `first`; null when there is none.
const char* endOfString(const char* first, const char* last)
{
    if (first == last || *first != '"')
        return nullptr;
    for (++first; first != last;) {
        const char character = *first++;
        if (character == '"')
            return first;
        if (character == '\\') {
            first = endOfEscape(first, last);
            if (first == nullptr)
                return nullptr;
        }
    }
    return nullptr;
}

char controlOf(char letter)
{
    switch (letter) {
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return letter;
    }
}

// Appends what the escape at `first`, behind its backslash, stands for; returns the end of the escape.
const char* decodeEscape(const char* first, std::string& text)
{
    if (*first != 'u') {
        text += controlOf(*first);
        return first + 1;
    }
    char32_t value = 0;
    for (std::size_t i = 1; i <= unicodeDigits; ++i)
        value = (value << 4) | static_cast<char32_t>(Velk::Hexadecimal::valueOf(first[i]));
    Velk::detail::appendUtf8(text, value);
    return first + 1 + unicodeDigits;
}

// The text between the quotes of a string token.
std::string decoded(const char* first, const char* last)
{
    const auto backslash = [&] {
        return static_cast<const char*>(std::memchr(first, '\\', static_cast<std::size_t>(last - first)));
    };
    const char* escape = backslash();
    if (escape == nullptr)
        return std::string(first, last);
    std::string text;
    text.reserve(static_cast<std::size_t>(last - first));
    for (; escape != nullptr; escape = backslash()) {
        text.append(first, escape);
        first = decodeEscape(escape + 1, text);
    }
    return text.append(first, last);
}

// ---- Numbers -------------------------------------------------------------------------------------

// The parts of the text of a number that has a decimal point or an exponent.
struct RealText
{
    bool negative;
    const char* digits;    // behind the sign
    const char* point;     // the end of the digits in front of the decimal point
    const char* exponent;  // the end of the digits behind it
    const char* end;
};

std::optional<RealText> realTextAt(const char* first, const char* last)
{
    RealText text{};
    text.negative = first != last && *first == '-';
    text.digits = first != last && isSign(*first) ? first + 1 : first;
    text.point = skipDigits(text.digits, last);
    const bool hasPoint = text.point != last && *text.point == '.';
    text.exponent = hasPoint ? skipDigits(text.point + 1, last) : text.point;
    if (text.exponent - text.digits == (hasPoint ? 1 : 0))
        return std::nullopt;
    text.end = text.exponent;
    if (text.end == last || (*text.end != 'e' && *text.end != 'E'))
        return hasPoint ? std::optional(text) : std::nullopt;
    const char* exponent = text.end + 1;
    if (exponent != last && isSign(*exponent))
        ++exponent;
    text.end = skipDigits(exponent, last);
    return text.end != exponent ? std::optional(text) : std::nullopt;
}

// Whether a number that does not fit a `double` is too large rather than too small, which the place of its
// first digit that counts and its exponent tell.
bool isTooLarge(const RealText& text)
{
    const auto counts = [](char character) { return character != '0' && character != '.'; };
    const char* const leading = std::find_if(text.digits, text.exponent, counts);
    if (leading == text.exponent)
        return false;
    if (text.exponent == text.end)
        return leading < text.point;
    const bool negative = text.exponent[1] == '-';
    const char* const digits = text.exponent + (isSign(text.exponent[1]) ? 2 : 1);
    long long exponent = 0;
    if (std::from_chars(digits, text.end, exponent).ec != std::errc())
        return !negative;
    return text.point - leading + (negative ? -exponent : exponent) > 0;
}

// Rounds to the nearest value, unlike Spirit's own parser, which adds up the digits one by one.
double valueOf(const RealText& text)
{
    double value = 0;
    if (std::from_chars(text.digits, text.end, value).ec != std::errc())
        value = isTooLarge(text) ? std::numeric_limits<double>::infinity() : 0;
    return text.negative ? -value : value;
}

// ---- Spirit's parsers of the tokens --------------------------------------------------------------

// Skips white space in front of tokens. Spirit's own skipper asks the global locale about each character.
struct SkipBlanks : spirit::skipper_iteration_policy<>
{
    template <typename Scanner>
    void skip(const Scanner& scan) const
    {
        while (scan.first != scan.last && isBlank(*scan.first))
            ++scan.first;
    }
};

using TextScanner = spirit::scanner<const char*, spirit::scanner_policies<SkipBlanks>>;

// A match of the text from the scanner's place to `end`.
template <typename Attribute>
spirit::match<Attribute> matchUpTo(const char* end, const Attribute& attribute, const TextScanner& scan)
{
    const char* const begin = scan.first;
    scan.first = end;
    return scan.create_match(static_cast<std::size_t>(end - begin), attribute, begin, end);
}

struct StringParser : spirit::parser<StringParser>
{
    spirit::match<> parse(const TextScanner& scan) const
    {
        const char* const end = endOfString(scan.first, scan.last);
        return end != nullptr ? matchUpTo(end, spirit::nil_t(), scan) : scan.no_match();
    }
};

template <typename Number>
struct NumberParser : spirit::parser<NumberParser<Number>>
{
    template <typename Scanner>
    struct result
    {
        using type = spirit::match<Number>;
    };

    spirit::match<Number> parse(const TextScanner& scan) const
    {
        const auto number = numberAt(scan.first, scan.last);
        return number ? matchUpTo(number->second, number->first, scan) : spirit::match<Number>();
    }

private:
    // The number at `first`, and where it ends.
    static std::optional<std::pair<Number, const char*>> numberAt(const char* first, const char* last);
};

template <>
std::optional<std::pair<double, const char*>> NumberParser<double>::numberAt(const char* first, const char* last)
{
    const auto text = realTextAt(first, last);
    return text ? std::optional(std::pair(valueOf(*text), text->end)) : std::nullopt;
}

template <>
std::optional<std::pair<int, const char*>> NumberParser<int>::numberAt(const char* first, const char* last)
{
    // The standard library does not accept a "+", so the number is read from behind it. A second sign is
    // refused.
    const char* const digits = first != last && isSign(*first) ? first + 1 : first;
    if (digits == last || !Velk::Ascii::isDigit(*digits))
        return std::nullopt;
    std::int32_t value = 0;
    const auto [end, fault] = std::from_chars(*first == '+' ? digits : first, last, value);
    return fault == std::errc() ? std::optional(std::pair(int{value}, end)) : std::nullopt;
}

// ---- Levels --------------------------------------------------------------------------------------

// Counts the open brackets. A level that is refused ends the parse, so the count does not matter after that.
class Nesting
{
public:
    bool enter() { return ++level_ <= deepestLevel; }
    void leave() { --level_; }

private:
    int level_ = 0;
};

struct EnterLevel
{
    Nesting* levels;
    bool operator()() const { return levels->enter(); }
};

struct LeaveLevel
{
    Nesting* levels;
    void operator()(char) const { levels->leave(); }
};

// ---- The tree ------------------------------------------------------------------------------------

using value_type = grammar<char>::value_type;
using stack_type = grammar<char>::stack_type;
using array_type = grammar<char>::array_type;
using object_type = grammar<char>::object_type;
using pair_type = grammar<char>::pair_type;

constexpr std::size_t mostSpares = 64;  // of each kind; most objects have fewer members

template <typename Value>
void push(stack_type& values, Value&& value)
{
    values.push_back(std::make_shared<boost::any>(std::forward<Value>(value)));
}

value_type pop(stack_type& values)
{
    value_type value = std::move(values.back());
    values.pop_back();
    return value;
}

// Pushes a node that holds `value`, a spare one when there is one; all spare nodes hold a `Value`.
template <typename Value>
void pushOnSpare(stack_type& values, stack_type* spares, Value value)
{
    if (spares == nullptr || spares->empty()) {
        push(values, std::move(value));
        return;
    }
    values.push_back(pop(*spares));
    *boost::any_cast<Value>(values.back().get()) = std::move(value);
}

void keepSpare(stack_type* spares, value_type&& node)
{
    if (spares != nullptr && spares->size() < mostSpares)
        spares->push_back(std::move(node));
}

// The first value above the last delimiter. There must be a delimiter.
template <typename Delimiter>
stack_type::iterator beginAbove(stack_type& values)
{
    const auto isDelimiter = [](const value_type& value) { return boost::any_cast<Delimiter>(value.get()) != nullptr; };
    return std::find_if(values.rbegin(), values.rend(), isDelimiter).base();
}

// Inserts behind equal keys that are already there. `neighbour` is where the last member went: documents list their
// members in some order, so the next one often belongs beside it.
object_type::iterator insertNear(object_type& object, object_type::iterator neighbour, pair_type&& member)
{
    const auto belongsBefore = [&](object_type::iterator place) {
        return (place == object.end() || member.first < place->first) &&
               (place == object.begin() || !(member.first < std::prev(place)->first));
    };
    if (belongsBefore(neighbour))
        return object.emplace_hint(neighbour, std::move(member));
    return object.insert(std::move(member));
}

}  // namespace

// ---- The actions ---------------------------------------------------------------------------------

void grammar<char>::push_string::operator()(const char* first, const char* last) const
{
    pushOnSpare(*values_, spares_ != nullptr ? &spares_->strings : nullptr, decoded(first + 1, last - 1));
}

void grammar<char>::push_int::operator()(int value) const
{
    push(*values_, value);
}

void grammar<char>::push_double::operator()(double value) const
{
    push(*values_, value);
}

void grammar<char>::push_boolean::operator()(const char* first, const char*) const
{
    push(*values_, *first == 't');
}

void grammar<char>::push_null::operator()(const char*, const char*) const
{
    values_->push_back(std::make_shared<boost::any>());
}

void grammar<char>::begin_array::operator()(char) const
{
    push(*values_, array_delimiter());
}

void grammar<char>::end_array::operator()(char) const
{
    // The array is filled where it stays, because moving a deque takes as long as filling a short one.
    static const array_type empty;
    auto node = std::make_shared<boost::any>(empty);
    const auto begin = beginAbove<array_delimiter>(*values_);
    boost::any_cast<array_type>(node.get())
        ->assign(std::make_move_iterator(begin), std::make_move_iterator(values_->end()));
    values_->erase(begin, values_->end());
    values_->back() = std::move(node);
}

void grammar<char>::begin_object::operator()(char) const
{
    push(*values_, object_delimiter());
}

void grammar<char>::create_pair::operator()(const char*, const char*) const
{
    value_type value = pop(*values_);
    value_type key = pop(*values_);
    pair_type pair(std::move(*boost::any_cast<std::string>(key.get())), std::move(value));
    pushOnSpare(*values_, spares_ != nullptr ? &spares_->pairs : nullptr, std::move(pair));
    keepSpare(spares_ != nullptr ? &spares_->strings : nullptr, std::move(key));
}

void grammar<char>::end_object::operator()(char) const
{
    object_type object;
    auto neighbour = object.end();
    auto entry = values_->rbegin();
    for (; pair_type* const member = boost::any_cast<pair_type>(entry->get()); ++entry)
        neighbour = insertNear(object, neighbour, std::move(*member));
    // This waits until now because an allocator is slower when it has to give and take by turns.
    for (auto pair = entry.base(); pair != values_->end(); ++pair)
        keepSpare(spares_ != nullptr ? &spares_->pairs : nullptr, std::move(*pair));
    values_->erase(entry.base(), values_->end());
    values_->back() = std::make_shared<boost::any>(std::move(object));
}

// ---- The grammar ---------------------------------------------------------------------------------

template <typename Scanner>
struct grammar<char>::definition
{
    using Rule = spirit::rule<Scanner>;

    explicit definition(stack_type& stack)
    {
        using spirit::ch_p;
        using spirit::eps_p;
        using spirit::str_p;
        const StringParser string;
        const NumberParser<double> real;
        const NumberParser<int> integer;
        const EnterLevel deeper{&levels};
        const LeaveLevel done{&levels};

        // clang-format off
        value  = string[push_string(stack, &spares)]
               | real[push_double(stack, &spares)]
               | integer[push_int(stack, &spares)]
               | object
               | array
               | (str_p("true") | "false")[push_boolean(stack, &spares)]
               | str_p("null")[push_null(stack, &spares)];
        object = ch_p('{')[begin_object(stack, &spares)] >> eps_p(deeper)
                 >> !(pair % ',')
                 >> ch_p('}')[end_object(stack, &spares)][done];
        pair   = (string[push_string(stack, &spares)] >> ':' >> value)[create_pair(stack, &spares)];
        array  = ch_p('[')[begin_array(stack, &spares)] >> eps_p(deeper)
                 >> !(value % ',')
                 >> ch_p(']')[end_array(stack, &spares)][done];
        // clang-format on
    }

    spare_nodes spares;
    Nesting levels;
    Rule value;
    Rule object;
    Rule pair;
    Rule array;
};

bool grammar<char>::parse(const char*& first, const char* last) const
{
    const definition<TextScanner> rules(*values_);
    return static_cast<bool>(rules.value.parse(TextScanner(first, last)));
}

// ---- Reading -------------------------------------------------------------------------------------

std::shared_ptr<boost::any> read(std::string_view text)
{
    const char* first = text.data();
    const char* const last = first + text.size();
    grammar<char>::stack_type values;
    const bool parsed = grammar<char>(values).parse(first, last);
    if (parsed && std::all_of(first, last, isBlank) && values.size() == 1)
        return values.front();
    return std::make_shared<boost::any>();
}

}  // namespace json
