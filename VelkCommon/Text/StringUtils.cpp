#include <VelkCommon/Text/StringUtils.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/EnglishTexts.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/detail/AskHost.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

/// Enough for the exact value of every double: the smallest is 2 to the -1074, which has that many decimals.
constexpr int exactDecimals = 1074;
constexpr std::size_t exactLength = std::numeric_limits<double>::max_exponent10 + 1 + 1 + exactDecimals;

/// The digits of a number that is not negative, on both sides of its decimal point.
struct Digits
{
    std::string whole;
    std::string fraction;
};

/// By std::to_chars, because it is exact and independent of the locale.
Digits exactDigits(double magnitude)
{
    std::string text(exactLength, '\0');
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), magnitude, std::chars_format::fixed, exactDecimals);
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    const std::size_t point = text.find('.');
    return {text.substr(0, point), text.substr(point + 1)};
}

/// Adds one to the last digit of a decimal number that has no decimal point.
void increaseLastDigit(std::string& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(0, 1, '1');
}

void roundHalfAway(Digits& digits, std::size_t decimals)
{
    if (decimals >= digits.fraction.size())
        return;
    const bool up = digits.fraction[decimals] >= '5';
    std::string kept = digits.whole + digits.fraction.substr(0, decimals);
    if (up)
        increaseLastDigit(kept);
    digits.whole = kept.substr(0, kept.size() - decimals);
    digits.fraction = kept.substr(kept.size() - decimals);
}

std::string groupByThousands(const std::string& whole, const std::string& separator)
{
    std::string grouped;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (i > 0 && (whole.size() - i) % 3 == 0)
            grouped += separator;
        grouped += whole[i];
    }
    return grouped;
}

/// Not by std::round(): some standard libraries add a half, which makes 1 out of the number just below 0.5. The
/// difference is exact here.
double nearestWhole(double value)
{
    const double towardsZero = std::trunc(value);
    return std::abs(value - towardsZero) < 0.5 ? towardsZero : towardsZero + std::copysign(1.0, value);
}

/// Rounds halves away from zero and limits the result to the range of `T`.
template <typename T>
T rounded(double value)
{
    if (std::isnan(value))
        return 0;
    const double whole = nearestWhole(value);
    if (whole <= static_cast<double>(std::numeric_limits<T>::min()))
        return std::numeric_limits<T>::min();
    if (whole >= static_cast<double>(std::numeric_limits<T>::max()))
        return std::numeric_limits<T>::max();
    return static_cast<T>(whole);
}

}  // namespace

namespace StringUtils {

std::string loadString(unsigned int id)
{
    return StringConvert::toStdUtf8String(loadUnicodeString(id));
}

std::u32string loadUnicodeString(unsigned int id)
{
    const auto answer = Velk::detail::askHost(Velk::host()->resourceString, id);
    if (answer && *answer)
        return **answer;
    if (id > static_cast<unsigned int>(std::numeric_limits<int>::max()))
        return {};
    return StringConvert::toUnicodeFromUtf8(Velk::englishText(static_cast<long>(id)).value_or(std::string_view()));
}

QString loadQString(unsigned int id)
{
    return StringConvert::toQString(loadUnicodeString(id));
}

bool replaceAll(std::u32string& text, std::u32string_view from, std::u32string_view to)
{
    std::size_t found = from.empty() ? std::u32string::npos : text.find(from);
    if (found == std::u32string::npos)
        return false;
    // Builds a new text, because replacing in place would move the rest of the text once per occurrence.
    std::u32string result;
    std::size_t copied = 0;
    for (; found != std::u32string::npos; found = text.find(from, copied)) {
        result.append(text, copied, found - copied).append(to);
        copied = found + from.size();
    }
    result.append(text, copied);
    text = std::move(result);
    return true;
}

std::vector<std::string> tokenizeString(std::string_view text, char delimiter)
{
    std::vector<std::string> pieces;
    for (std::size_t end = text.find(delimiter); end != std::string_view::npos; end = text.find(delimiter)) {
        pieces.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    pieces.emplace_back(text);
    return pieces;
}

std::string removeAllOf(std::string_view text, std::string_view characters)
{
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        if (characters.find(character) == std::string_view::npos)
            result += character;
    }
    return result;
}

std::string_view trimmed(std::string_view text, std::string_view characters) noexcept
{
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

bool iStartsWith(std::string_view text, std::string_view prefix)
{
    return toLowerUtf8(text).starts_with(toLowerUtf8(prefix));
}

}  // namespace StringUtils

std::string formatWithThousandsSeparatorPrecision(double value, int precision)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    Digits digits = exactDigits(std::fabs(value));
    roundHalfAway(digits, static_cast<std::size_t>(precision < 0 ? 0 : precision));
    digits.fraction.erase(digits.fraction.find_last_not_of('0') + 1);

    const auto host = Velk::host();
    const bool isZero = digits.whole == "0" && digits.fraction.empty();
    std::string text = value < 0 && !isZero ? "-" : "";
    text += groupByThousands(digits.whole, host->numberFormat.thousandsSeparator);
    if (!digits.fraction.empty())
        text += host->numberFormat.decimalPoint + digits.fraction;
    return text;
}

template <>
int roundToNearest<int>(double value)
{
    return rounded<int>(value);
}

template <>
long roundToNearest<long>(double value)
{
    return rounded<long>(value);
}

template <>
long long roundToNearest<long long>(double value)
{
    return rounded<long long>(value);
}
