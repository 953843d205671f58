// Reads any bytes as the head of a request. What is taken can be understood in one way only, and reads back as it was.
#include "host/service/RequestHead.h"

#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace {

std::string textOf(const VelkHost::RequestHead& head)
{
    std::string text = head.method + " " + head.target + (head.oldVersion ? " HTTP/1.0\r\n" : " HTTP/1.1\r\n");
    for (const auto& [name, value] : head.fields)
        text += name + ": " + value + "\r\n";
    return text + "\r\n";
}

bool holdsLineEnd(std::string_view text)
{
    return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace VelkHost;
    const HeadLimits limits;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t length = headLength(text);
    fuzz::check(length <= size && (length == 0 || text.substr(0, length).ends_with("\r\n\r\n")), "the end is an end");
    const auto read = readHead(text.substr(0, length), limits);
    if (const auto* const refusal = std::get_if<Refusal>(&read)) {
        fuzz::check(refusal->status >= 400 && refusal->status < 500 && !refusal->text.empty(), "it says why");
        return 0;
    }
    const auto& head = std::get<RequestHead>(read);
    fuzz::check(head.field("Transfer-Encoding").empty() && head.bodyBytes <= limits.bodyBytes, "the body has an end");
    fuzz::check(head.fields.size() <= limits.fields, "there are not too many fields");
    fuzz::check(std::none_of(head.fields.begin(), head.fields.end(),
                             [](const auto& field) { return holdsLineEnd(field.first) || holdsLineEnd(field.second); }),
                "each field is in one line");
    const auto again = readHead(textOf(head), {.line = size + 1, .bytes = 2 * size + 1'000});
    const auto* const same = std::get_if<RequestHead>(&again);
    fuzz::check(same != nullptr && textOf(*same) == textOf(head) && same->bodyBytes == head.bodyBytes &&
                    same->keepsConnection == head.keepsConnection,
                "it reads back");
    return 0;
}
