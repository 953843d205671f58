#include <VelkLibrary/CatalogDownloadProtocol.h>

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Reporting/EnforcerThrow.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

namespace LibraryCatalogUpdate {
namespace {

using Headers = std::map<std::string, std::vector<std::string>, WebUtils::HeaderNameCompare>;

// What the service calls the catalog: all except the core catalogs travel packed.
std::string libraryName(const fileString& fileName, std::uint32_t kind)
{
    if (kind == CoreCatalogs)
        return StringConvert::toStdUtf8String(fileName);
    return StringConvert::toStdUtf8String(fileName.stem()) + Library::extensions::packed;
}

// A text that is not a number of 32 bits leaves the length as it is.
void applyContentLength(CatalogRecord& record, const Headers& headers)
{
    const auto found = headers.find("Content-Length");
    if (found == headers.end() || found->second.empty())
        return;
    const std::string& text = found->second.back();
    const char* const end = text.data() + text.size();
    std::uint32_t length = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, length);
    if (error == std::errc() && stop == end)
        record.contentLength = length;
}

// Of W/"abc" the text is abc. A tag without its quotes is taken as it is.
std::string tagText(std::string tag)
{
    const std::size_t first = tag.find('"');
    const std::size_t last = tag.rfind('"');
    if (first != last)
        tag = tag.substr(first + 1, last - first - 1);
    // A line break would begin another line in the hash file.
    std::erase_if(tag, [](char byte) { return Library::holdsControlCharacter({&byte, 1}); });
    return tag;
}

void applyEntityTag(CatalogRecord& record, const Headers& headers)
{
    const auto found = headers.find("ETag");
    if (found == headers.end())
        return;
    record.remoteHash = found->second.empty() ? std::string() : tagText(found->second.back());
}

}  // namespace

std::string resolveApiEndpoint()
{
    detail::CatalogUpdateState& state = detail::CatalogUpdateState::get();
    std::string endpoint = state.endpoint();
    if (!endpoint.empty())
        return endpoint;
    RunFault fault;
    endpoint = WebUtils::getUrlAfterRedirects(state.serviceAddress(), fault.reason, fault.code);
    state.setEndpoint(endpoint, fault);
    if (endpoint.empty())
        Library::ErrorLog() << "Unable to determine api endpoint\n";
    return endpoint;
}

RunFault apiEndpointFault()
{
    return detail::CatalogUpdateState::get().endpointFault();
}

fileString catalogFolder(std::uint32_t kind)
{
    switch (kind) {
        case CoreCatalogs:
            return PathUtils::getObject().getCoreLibraryDatabasePath();
        case ManufacturerCatalogs:
            return PathUtils::getObject().getManufacturerLibraryPath();
        case BonusCatalogs:
            return PathUtils::getObject().getBonusLibraryDatabasePath();
        default:
            return {};
    }
}

fileString downloadFolder(std::uint32_t kind)
{
    if (gApp == nullptr)
        EnforcerThrow("!gApp", Library::detail::places::noApplication);
    const fileString temporary = PathUtils::getObject().getTempPath();
    const fileString installed = catalogFolder(kind);
    const fileString name =
        fileString(gApp->getInstanceName() + ".downloads.") + installed.parentPath().stemWithExtension();
    // The folder is removed with everything in it, so it must be one that nothing else uses.
    if (installed.empty() || temporary.empty() || !Library::isPlainFileName(name.utf8()))
        return {};
    return temporary / name;
}

fileString coreIndexFileName()
{
    const auto host = Velk::host();
    const Velk::HostEditions& editions = host->editions;
    const std::size_t running = editions.running < editions.words.size() ? editions.running : 0;
    return fileString(editions.words[running] + "_Core_Content_Index.txt");
}

std::pair<std::string, std::vector<std::string>> buildCatalogRequest(const fileString& fileName,
                                                                     const CatalogRecord& record,
                                                                     const std::string& product,
                                                                     const std::string& version)
{
    std::string url = resolveApiEndpoint();
    if (!url.empty())
        url += "&library=" + libraryName(fileName, record.kind) + "&product=" + product + "&version=" + version;
    std::vector<std::string> headers{"If-None-Match: \"" + record.localHash + "\""};
    return {std::move(url), std::move(headers)};
}

void applyHeaderResponse(CatalogRecord& record, const std::string& header, long status)
{
    using Status = std::numeric_limits<std::int32_t>;
    Headers headers;
    WebUtils::parseReturnHeader(header, headers);
    record.status = static_cast<std::int32_t>(std::clamp<long>(status, Status::min(), Status::max()));
    applyContentLength(record, headers);
    applyEntityTag(record, headers);
}

void fetchServiceMessage(const fileString& fileName, CatalogRecord& record, const std::string& product,
                         const std::string& version)
{
    const auto [url, headers] = buildCatalogRequest(fileName, record, product, version);
    if (url.empty())
        return;
    // The text belongs to a failure, so it is kept whatever the result is.
    std::string body;
    Curl::get().browseURL(url, headers, body, true, 0);
    record.serviceMessage = std::move(body);
}

bool isSupportedCatalogFile(const fileString& path)
{
    using namespace Library::extensions;
    return path.hasExtension(database) || path.hasExtension(packed) || path.hasExtension(referencedFiles);
}

}  // namespace LibraryCatalogUpdate
