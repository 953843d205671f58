#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// @file
/// The head of an HTTP/1.1 request, read strictly: whatever two servers might understand differently is refused, so
/// that nobody can hide a second request in a first one from a server on the way. Any thread.

namespace VelkHost {

/// What a head may be at most.
struct HeadLimits
{
    std::size_t line = 8 << 10;          ///< bytes of the first line
    std::size_t bytes = 32 << 10;        ///< bytes of all lines together
    std::size_t fields = 100;            ///< header fields
    std::uint64_t bodyBytes = 64 << 10;  ///< of the body that the head declares
};

/// A request up to its body.
struct RequestHead
{
    std::string method;                                       ///< "GET", "HEAD", ...
    std::string target;                                       ///< path and query as they came over the wire
    std::vector<std::pair<std::string, std::string>> fields;  ///< in the order in which they came
    std::uint64_t bodyBytes = 0;                              ///< of the body that follows
    bool oldVersion = false;                                  ///< HTTP/1.0
    bool keepsConnection = true;                              ///< the client may send another request afterwards

    /// The value of the first field of that name in any letter case; empty when there is none.
    std::string_view field(std::string_view name) const noexcept;
};

/// Why a request is not answered. The connection ends with this answer, as nobody knows where the next request begins.
struct Refusal
{
    int status = 400;
    std::string_view text;  ///< for people; a literal
};

/// The number of bytes of the head that `received` begins with, its blank line included, or 0 while that line has not
/// come. `searched` bytes were looked at before.
std::size_t headLength(std::string_view received, std::size_t searched = 0) noexcept;

/// Whether a head that has begun like this is too long already: 414 or 431. The status is 0 if it is not.
Refusal refusalOfBeginning(std::string_view received, const HeadLimits& limits) noexcept;

/// Reads a whole head, its blank line included.
///
/// Refused are, beside what no grammar allows: folded lines, lines that do not end with both CR and LF, other control
/// characters, every Transfer-Encoding, any but one plain number as the Content-Length, no or several Host fields in
/// HTTP/1.1, versions other than HTTP/1.0 and 1.1, an Expect field, and what exceeds the limits.
std::variant<RequestHead, Refusal> readHead(std::string_view head, const HeadLimits& limits);

/// "Not Found" for 404.
std::string statusPhrase(int status);

}  // namespace VelkHost
