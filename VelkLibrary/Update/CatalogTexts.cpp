#include <VelkLibrary/Update/detail/CatalogTexts.h>

#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/PlainFileName.h>

#include <algorithm>

using Library::holdsControlCharacter;
using Library::isPlainFileName;

namespace LibraryCatalogUpdate::detail {

std::optional<std::pair<std::string, std::string>> parseHashLine(std::string_view line)
{
    // The file may have been written on Windows; left in, the carriage return would make every catalog seem
    // changed.
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (std::count(line.begin(), line.end(), ':') != 1)
        return std::nullopt;
    std::vector<std::string> parts = StringUtils::tokenizeString(line, ':');
    if (!isPlainFileName(parts[0]) || holdsControlCharacter(parts[1]))
        return std::nullopt;
    return std::pair(std::move(parts[0]), std::move(parts[1]));
}

std::vector<fileString> parseCoreIndex(std::string_view body)
{
    std::vector<fileString> names;
    while (!body.empty()) {
        const std::size_t end = std::min(body.find('\n'), body.size());
        const std::string line = StringUtils::removeAllOf(body.substr(0, end), "\r");
        body.remove_prefix(std::min(end + 1, body.size()));
        if (isPlainFileName(line) && isSupportedCatalogFile(fileString(line)))
            names.emplace_back(line);
    }
    return names;
}

}  // namespace LibraryCatalogUpdate::detail
