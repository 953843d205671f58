#include <VelkCommon/Text/TimeText.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <algorithm>
#include <optional>
#include <string_view>

namespace Library {
namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;

constexpr std::string_view notADateTime = "not-a-date-time";
constexpr std::string_view minusInfinity = "-infinity";
constexpr std::string_view plusInfinity = "+infinity";

constexpr std::size_t lengthWithoutFraction = 15;  // 20260301T140559
constexpr std::size_t fractionDigits = 6;          // times are kept in microseconds
constexpr std::size_t longestFraction = 9;         // other writers use nanoseconds

// The fields are written and read here, not through streams: those follow the global locale.
void appendPadded(std::string& out, long long value, std::size_t width)
{
    const std::string digits = std::to_string(value);
    out.append(width - std::min(width, digits.size()), '0').append(digits);
}

/// The fields of `value`, which must not be a special value, with the given separators.
std::string fieldsOf(const ptime& value, std::string_view dateSeparator, std::string_view timeSeparator)
{
    const auto date = value.date().year_month_day();
    const time_duration time = value.time_of_day();
    std::string text;
    appendPadded(text, date.year, 4);
    appendPadded(text.append(dateSeparator), date.month.as_number(), 2);
    appendPadded(text.append(dateSeparator), date.day, 2);
    appendPadded(text.append("T"), time.hours(), 2);
    appendPadded(text.append(timeSeparator), time.minutes(), 2);
    appendPadded(text.append(timeSeparator), time.seconds(), 2);
    return text;
}

void appendFraction(std::string& out, const ptime& value)
{
    out += '.';
    appendPadded(out, value.time_of_day().fractional_seconds(), fractionDigits);
}

/// The number that `text` stands for; empty unless all of its characters are digits.
std::optional<int> numberIn(std::string_view text)
{
    int value = 0;
    for (const char character : text) {
        if (character < '0' || character > '9')
            return std::nullopt;
        value = value * 10 + (character - '0');
    }
    return value;
}

std::optional<boost::gregorian::date> dateIn(std::string_view text)
{
    using Calendar = boost::gregorian::gregorian_calendar;
    const auto year = numberIn(text.substr(0, 4));
    const auto month = numberIn(text.substr(4, 2));
    const auto day = numberIn(text.substr(6, 2));
    if (!year || !month || !day)
        return std::nullopt;
    if (*year < 1400 || *year > 9999 || *month < 1 || *month > 12)
        return std::nullopt;
    const auto calendarYear = static_cast<unsigned short>(*year);
    const auto calendarMonth = static_cast<unsigned short>(*month);
    if (*day < 1 || *day > Calendar::end_of_month_day(calendarYear, calendarMonth))
        return std::nullopt;
    return boost::gregorian::date(calendarYear, calendarMonth, static_cast<unsigned short>(*day));
}

std::optional<time_duration> timeIn(std::string_view text)
{
    const auto hours = numberIn(text.substr(0, 2));
    const auto minutes = numberIn(text.substr(2, 2));
    const auto seconds = numberIn(text.substr(4, 2));
    if (!hours || !minutes || !seconds || *hours > 23 || *minutes > 59 || *seconds > 59)
        return std::nullopt;
    return time_duration(*hours, *minutes, *seconds);
}

/// The fraction in the text after the seconds, which is either nothing or a separator and digits. Digits
/// beyond microseconds are dropped.
std::optional<time_duration> fractionIn(std::string_view text)
{
    if (text.empty())
        return time_duration(0, 0, 0);
    const std::string_view digits = text.substr(1);
    const bool separated = text[0] == '.' || text[0] == ',';
    if (!separated || digits.empty() || digits.size() > longestFraction || !numberIn(digits))
        return std::nullopt;
    std::string microseconds(digits.substr(0, fractionDigits));
    microseconds.append(fractionDigits - microseconds.size(), '0');
    return boost::posix_time::microseconds(*numberIn(microseconds));
}

}  // namespace

ptime getTimeNow()
{
    return boost::posix_time::microsec_clock::universal_time();
}

std::string getTimeNowString()
{
    const ptime now = getTimeNow();
    std::string text = fieldsOf(now, "-", ":");
    appendFraction(text, now);
    return text + "Z";
}

template <>
std::string toString<ptime>(const ptime& value)
{
    if (value.is_not_a_date_time())
        return std::string(notADateTime);
    if (value.is_infinity())
        return std::string(value.is_neg_infinity() ? minusInfinity : plusInfinity);
    std::string text = fieldsOf(value, "", "");
    if (value.time_of_day().fractional_seconds() != 0)
        appendFraction(text, value);
    return text;
}

template <>
ptime fromString<ptime>(const std::string& text)
{
    if (text == minusInfinity)
        return ptime(boost::posix_time::neg_infin);
    if (text == plusInfinity)
        return ptime(boost::posix_time::pos_infin);
    if (text.size() < lengthWithoutFraction || text[8] != 'T')
        return ptime();
    const std::string_view fields = text;
    const auto date = dateIn(fields.substr(0, 8));
    const auto time = timeIn(fields.substr(9, 6));
    const auto fraction = fractionIn(fields.substr(lengthWithoutFraction));
    return date && time && fraction ? ptime(*date, *time + *fraction) : ptime();
}

}  // namespace Library
