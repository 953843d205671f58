#include "host/command/PublishReportText.h"

#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringConvert.h>

#include <algorithm>

namespace VelkHost {
namespace {

constexpr std::size_t longestName = 48;  // columns

const char* stateText(PublishedLibrary::State state)
{
    switch (state) {
        case PublishedLibrary::State::Added:
            return "new";
        case PublishedLibrary::State::Changed:
            return "changed";
        case PublishedLibrary::State::Removed:
            return "removed";
        default:
            return "unchanged";
    }
}

std::string padded(const std::string& text, std::size_t width)
{
    const std::size_t used = displayWidth(StringConvert::toUnicodeFromUtf8(text));
    return text + std::string(width - std::min(used, width), ' ');
}

std::string shortened(const std::string& name)
{
    return render(cutToWidth(highlighted(name, {}), longestName), false);
}

/// Who cannot read what is published; empty when everybody can.
std::string readersText(const PublishReport& report)
{
    const auto count = std::count_if(report.libraries.begin(), report.libraries.end(),
                                     [](const auto& library) { return library.format > CatalogFormat::Names; });
    if (count == 0)
        return {};
    return std::to_string(count) + (count == 1 ? " library is" : " libraries are") +
           " of catalog format 2, which programs that know only format 1 cannot read;\n"
           "\"velk catalog build --catalog-format 1\" makes catalogs for those, without sizes and properties.\n";
}

}  // namespace

std::string publishReportText(const PublishReport& report, const fileString& site)
{
    std::size_t width = 0;
    for (const PublishedLibrary& library : report.libraries)
        width = std::max(width, displayWidth(StringConvert::toUnicodeFromUtf8(shortened(library.name))));
    std::string text;
    std::uint64_t bytes = 0;
    for (const PublishedLibrary& library : report.libraries) {
        text += "  " + padded(shortened(library.name), width) + "  " + padded(stateText(library.state), 9) + "  " +
                byteText(library.size) + "\n";
        bytes += library.state == PublishedLibrary::State::Removed ? 0 : library.size;
    }
    const auto removed = std::count_if(report.libraries.begin(), report.libraries.end(), [](const auto& library) {
        return library.state == PublishedLibrary::State::Removed;
    });
    const std::size_t libraries = report.libraries.size() - static_cast<std::size_t>(removed);
    text += report.changed ? "Published edition " + std::to_string(report.edition)
                           : "Nothing has changed since edition " + std::to_string(report.edition);
    text += " in " + printableUtf8(site.utf8()) + ": " + std::to_string(libraries) +
            (libraries == 1 ? " library, " : " libraries, ") + byteText(bytes);
    if (report.manufacturers)
        text += ", manufacturers' data and " + std::to_string(report.logos) + (report.logos == 1 ? " logo" : " logos");
    text += "\n";
    text += readersText(report);
    if (report.left > 0)
        text += std::to_string(report.left) + (report.left == 1 ? " file" : " files") +
                " of earlier editions could not be removed; the next publication tries again.\n";
    return text;
}

}  // namespace VelkHost
