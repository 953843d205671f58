#pragma once

#include "host/service/Site.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// @file
/// What the content service answers to a request, whichever server is in use (docs/content-service.md).

namespace VelkHost {

/// The paths of the service. The configured address, "/", leads to the endpoint.
namespace paths {
constexpr std::string_view service = "/";
constexpr std::string_view endpoint = "/catalog?v=1";
constexpr std::string_view catalog = "/catalog";
constexpr std::string_view manufacturers = "/manufacturers";
constexpr std::string_view logo = "/logo";
}  // namespace paths

/// Texts that clients get; the web server's configuration sends the same.
namespace messages {
constexpr std::string_view endpoint = "This is the content service.\n";
constexpr std::string_view unknownLibrary = "This library is not part of the content service.\n";
constexpr std::string_view unknownLogo = "This logo is not part of the content service.\n";
constexpr std::string_view noManufacturers = "The content service has no manufacturers' data.\n";
constexpr std::string_view unknownPath = "There is nothing here.\n";
constexpr std::string_view wrongMethod = "The content service answers GET and HEAD only.\n";
constexpr std::string_view wrongRange = "The file has no such range.\n";
}  // namespace messages

/// How long caches may use an answer without asking: never, so that a header check and the download behind it
/// see the same edition. They keep the bytes, unchanged, and ask with the entity tag.
constexpr std::string_view cacheControl = "public, no-cache, no-transform";

/// The content type of a stored file by its extension; also for the web server's configuration.
extern const std::vector<std::pair<std::string_view, std::string_view>> contentTypes;
constexpr std::string_view textType = "text/plain; charset=utf-8";
constexpr std::string_view bytesType = "application/octet-stream";

struct SiteRequest
{
    std::string method;  ///< "GET", "HEAD", ...
    std::string target;  ///< path and query as they came over the wire
    std::string ifNoneMatch;
    std::string ifRange;
    std::string range;
};

struct SiteAnswer
{
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string type;
    std::string body;          ///< a text, or empty when `file` has the body
    std::string file;          ///< name in SITE/files
    std::uint64_t offset = 0;  ///< of the body in the file
    std::uint64_t length = 0;
};

/// An edition, ready for requests. Immutable: any thread.
class SiteEdition
{
public:
    explicit SiteEdition(const SiteTable& table);

    SiteAnswer answer(const SiteRequest& request) const;
    std::uint64_t number() const noexcept { return number_; }

private:
    SiteAnswer route(const SiteRequest& request) const;
    SiteAnswer library(const SiteRequest& request, std::string_view query) const;

    std::uint64_t number_;
    std::unordered_map<std::string, SiteFile> libraries_;     // by lookup key
    std::unordered_map<std::string, std::string> withdrawn_;  // likewise
    std::unordered_map<std::string, SiteFile> logos_;
    std::optional<SiteFile> manufacturers_;
};

/// The value of a query's first argument of that name, as it came over the wire; empty when there is none.
std::string_view queryArgument(std::string_view query, std::string_view name);

/// Whether a list of entity tags, as "If-None-Match" has it, names `tag` ("*" names every one).
bool namesTag(std::string_view list, std::string_view tag);

/// The one range of bytes that a "Range" header asks for, of a file of `size` bytes.
struct ByteRange
{
    enum class Kind {
        Whole,         ///< no range is asked for, several are, or one in an unknown unit: the whole file
        Part,          ///< `offset` and `length`, not empty
        Unsatisfiable  ///< the range lies outside the file, or makes no sense
    };
    Kind kind = Kind::Whole;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};
ByteRange byteRange(std::string_view header, std::uint64_t size);

/// What a client's query holds for this name: its form on the wire.
std::string libraryOnTheWire(const std::string& name);
/// The same for a logo, which clients ask for in Windows-1252.
std::string logoOnTheWire(const std::string& name);

}  // namespace VelkHost
