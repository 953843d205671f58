#include "host/service/SiteAnswer.h"

#include "host/service/PublishedName.h"

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/PercentEncoding.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace VelkHost {
namespace {

constexpr std::string_view withoutDot(std::string_view extension)
{
    return extension.substr(1);
}

}  // namespace

const std::vector<std::pair<std::string_view, std::string_view>> contentTypes = {
    {withoutDot(Library::extensions::database), bytesType},
    {withoutDot(Library::extensions::packed), bytesType},
    {withoutDot(Library::extensions::referencedFiles), bytesType},
    {"txt", textType},
    {"json", "application/json"},
    {"png", "image/png"},
    {"jpg", "image/jpeg"},
    {"jpeg", "image/jpeg"},
    {"gif", "image/gif"},
    {"svg", "image/svg+xml"},
    {"webp", "image/webp"},
    {"bin", bytesType},
};

namespace {

std::string_view typeOf(std::string_view stored)
{
    const std::string_view extension = stored.substr(stored.rfind('.') + 1);
    for (const auto& [known, type] : contentTypes)
        if (known == extension)
            return type;
    return bytesType;
}

SiteAnswer textAnswer(int status, std::string_view text)
{
    SiteAnswer answer;
    answer.status = status;
    answer.type = textType;
    answer.body = text;
    return answer;
}

SiteAnswer fileAnswer(const SiteRequest& request, const SiteFile& file)
{
    SiteAnswer answer;
    answer.headers = {{"ETag", "\"" + file.tag + "\""}};
    if (namesTag(request.ifNoneMatch, file.tag)) {
        answer.status = 304;
        return answer;
    }
    // A download that began with another version must not be continued.
    const bool sameVersion = request.ifRange.empty() || request.ifRange == answer.headers.front().second;
    const ByteRange range = sameVersion ? byteRange(request.range, file.size) : ByteRange();
    const std::string size = std::to_string(file.size);
    if (range.kind == ByteRange::Kind::Unsatisfiable) {
        answer = textAnswer(416, messages::wrongRange);
        answer.headers = {{"Content-Range", "bytes */" + size}};
        return answer;
    }
    answer.type = typeOf(file.stored);
    answer.file = file.stored;
    answer.length = file.size;
    if (range.kind == ByteRange::Kind::Whole) {
        answer.headers.emplace_back("Accept-Ranges", "bytes");
    } else {
        answer.status = 206;
        answer.offset = range.offset;
        answer.length = range.length;
        answer.headers.emplace_back("Content-Range", "bytes " + std::to_string(range.offset) + "-" +
                                                         std::to_string(range.offset + range.length - 1) + "/" + size);
    }
    return answer;
}

/// Digits only, without a sign; a number too large to hold counts as the largest.
std::optional<std::uint64_t> number(std::string_view digits)
{
    std::uint64_t value = 0;
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), Velk::Ascii::isDigit<char>))
        return std::nullopt;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return result.ec == std::errc() ? value : std::numeric_limits<std::uint64_t>::max();
}

}  // namespace

SiteEdition::SiteEdition(const SiteTable& table) : number_(table.edition), manufacturers_(table.manufacturers)
{
    for (const auto& [name, file] : table.libraries)
        libraries_.emplace(lookupKey(libraryOnTheWire(name)), file);
    for (const auto& [name, message] : table.withdrawn)
        withdrawn_.emplace(lookupKey(libraryOnTheWire(name)), message + "\n");
    for (const auto& [name, file] : table.logos)
        logos_.emplace(lookupKey(logoOnTheWire(name)), file);
}

SiteAnswer SiteEdition::answer(const SiteRequest& request) const
{
    SiteAnswer answer = route(request);
    answer.headers.emplace_back("Cache-Control", cacheControl);
    return answer;
}

SiteAnswer SiteEdition::route(const SiteRequest& request) const
{
    if (request.method != "GET" && request.method != "HEAD")
        return textAnswer(405, messages::wrongMethod);
    const std::string_view target = request.target;
    const std::string_view path = target.substr(0, target.find('?'));
    const std::string_view query = path.size() < target.size() ? target.substr(path.size() + 1) : std::string_view();
    if (path == paths::service) {
        SiteAnswer answer = textAnswer(302, messages::endpoint);
        answer.headers = {{"Location", std::string(paths::endpoint)}};
        return answer;
    }
    if (path == paths::catalog)
        return library(request, query);
    if (path == paths::manufacturers)
        return manufacturers_ ? fileAnswer(request, *manufacturers_) : textAnswer(404, messages::noManufacturers);
    if (path == paths::logo) {
        const auto logo = logos_.find(lookupKey(queryArgument(query, "logo-path")));
        return logo != logos_.end() ? fileAnswer(request, logo->second) : textAnswer(404, messages::unknownLogo);
    }
    return textAnswer(404, messages::unknownPath);
}

SiteAnswer SiteEdition::library(const SiteRequest& request, std::string_view query) const
{
    const std::string key = lookupKey(queryArgument(query, "library"));
    if (key.empty())
        return textAnswer(200, messages::endpoint);
    if (const auto file = libraries_.find(key); file != libraries_.end())
        return fileAnswer(request, file->second);
    if (const auto message = withdrawn_.find(key); message != withdrawn_.end())
        return textAnswer(403, message->second);
    return textAnswer(404, messages::unknownLibrary);
}

std::string_view queryArgument(std::string_view query, std::string_view name)
{
    while (!query.empty()) {
        const std::string_view argument = query.substr(0, query.find('&'));
        if (argument.size() > name.size() && argument[name.size()] == '=' &&
            lookupKey(argument.substr(0, name.size())) == name)
            return argument.substr(name.size() + 1);
        query.remove_prefix(std::min(argument.size() + 1, query.size()));
    }
    return {};
}

bool namesTag(std::string_view list, std::string_view tag)
{
    if (StringUtils::trimmed(list) == "*")
        return true;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(','), list.size());
        std::string_view item = StringUtils::trimmed(list.substr(0, end));
        if (item.starts_with("W/"))
            item.remove_prefix(2);
        if (item.size() == tag.size() + 2 && item.front() == '"' && item.back() == '"' &&
            item.substr(1, tag.size()) == tag)
            return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

ByteRange byteRange(std::string_view header, std::uint64_t size)
{
    using Kind = ByteRange::Kind;
    constexpr std::string_view unit = "bytes=";
    if (lookupKey(header.substr(0, unit.size())) != unit || header.find(',') != std::string_view::npos)
        return {};
    const std::string_view range = StringUtils::trimmed(header.substr(unit.size()));
    const std::size_t dash = range.find('-');
    if (dash == std::string_view::npos)
        return {Kind::Unsatisfiable};
    const std::optional<std::uint64_t> first = number(range.substr(0, dash));
    const std::optional<std::uint64_t> last = number(range.substr(dash + 1));
    if (dash == 0 && last)
        return *last > 0 && size > 0 ? ByteRange{Kind::Part, size - std::min(*last, size), std::min(*last, size)}
                                     : ByteRange{Kind::Unsatisfiable};
    const bool open = dash + 1 == range.size();
    if (!first || *first >= size || (!open && (!last || *last < *first)))
        return {Kind::Unsatisfiable};
    const std::uint64_t end = open ? size - 1 : std::min(*last, size - 1);
    return {Kind::Part, *first, end - *first + 1};
}

std::string libraryOnTheWire(const std::string& name)
{
    return Velk::wireForm(name);
}

std::string logoOnTheWire(const std::string& name)
{
    return Velk::wireForm(StringConvert::toWin1252(StringConvert::toUnicodeFromUtf8(name)));
}

}  // namespace VelkHost
