#include <VelkCommon/Network/WebUtils.h>

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace {

using Headers = std::map<std::string, std::vector<std::string>, WebUtils::HeaderNameCompare>;
using Line = std::pair<std::string, std::string>;

constexpr std::string_view blanks = " \t\r\n";

std::string trimmed(std::string text)
{
    text.erase(0, std::min(text.find_first_not_of(blanks), text.size()));
    text.erase(text.find_last_not_of(blanks) + 1);
    return text;
}

std::vector<std::string> linesOf(const std::string& block)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < block.size();) {
        const std::size_t end = std::min(block.find('\n', at), block.size());
        lines.push_back(block.substr(at, end - at));
        if (lines.back().ends_with('\r'))
            lines.back().pop_back();
        at = end + 1;
    }
    return lines;
}

/// The names and values, found in a slower way: first each header with the lines that continue it, then its parts.
std::vector<Line> expected(const std::string& block)
{
    std::vector<std::vector<std::string>> folded;
    for (const std::string& line : linesOf(block)) {
        const bool continues = line.starts_with(' ') || line.starts_with('\t');
        if (!continues)
            folded.push_back({line});
        else if (!folded.empty())
            folded.back().push_back(line);
    }
    std::vector<Line> result;
    for (const std::vector<std::string>& lines : folded) {
        const std::size_t colon = lines[0].find(':');
        if (colon == std::string::npos || lines[0].starts_with("HTTP/"))
            continue;
        std::string value = trimmed(lines[0].substr(colon + 1));
        for (std::size_t i = 1; i < lines.size(); ++i)
            value = trimmed(value + " " + trimmed(lines[i]));
        if (const std::string name = trimmed(lines[0].substr(0, colon)); !name.empty())
            result.emplace_back(name, value);
    }
    return result;
}

void checkOrder(const std::vector<Line>& lines)
{
    const WebUtils::HeaderNameCompare before;
    for (std::size_t i = 0; i + 1 < lines.size() && i < 8; ++i) {
        const std::string& a = lines[i].first;
        const std::string& b = lines[i + 1].first;
        fuzz::check(!before(a, a), "nothing comes before itself");
        fuzz::check(!before(a, b) || !before(b, a), "one of two comes first");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string block(reinterpret_cast<const char*>(data), size);
    Headers headers;
    WebUtils::parseReturnHeader(block, headers);

    const std::vector<Line> lines = expected(block);
    Headers wanted;
    for (const Line& line : lines)
        wanted[line.first].push_back(line.second);
    fuzz::check(headers == wanted, "every value is there, in its order, and no other");
    checkOrder(lines);
    return 0;
}
