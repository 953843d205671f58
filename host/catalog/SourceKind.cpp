#include "host/catalog/SourceKind.h"

#include "host/catalog/FurnitureLibrary.h"
#include "host/catalog/ZipSource.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

namespace VelkHost {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t beginningBytes = 4'096;
constexpr std::string_view zipSignature = "PK";
constexpr std::string_view catalogSignature = "SQLite format 3\0"sv;
constexpr std::string_view imageSignatures[] = {"\x89PNG", "\xFF\xD8\xFF", "GIF8", "BM", "II*\0"sv, "MM\0*"sv};
constexpr std::string_view utf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

[[noreturn]] void refuse(const fileString& path, const std::string& what)
{
    throw FileError(path, what + "; a source is a furniture library (.sh3f) or a CSV file");
}

bool isImage(std::string_view beginning)
{
    // "BM" may well begin a text, which has no zero bytes.
    const bool isText = beginning.find('\0') == std::string_view::npos;
    return std::any_of(std::begin(imageSignatures), std::end(imageSignatures), [&](std::string_view signature) {
        return beginning.starts_with(signature) && !(signature == "BM" && isText);
    });
}

/// Whether this is text of which each character takes two bytes: with a mark, or else with a zero byte in nearly every
/// pair, always in the same place, as western text has it.
bool isUtf16(std::string_view beginning)
{
    if (std::any_of(std::begin(utf16Marks), std::end(utf16Marks),
                    [&](std::string_view mark) { return beginning.starts_with(mark); }))
        return true;
    std::size_t zeros[2] = {0, 0};
    for (std::size_t i = 0; i < beginning.size(); ++i)
        zeros[i % 2] += beginning[i] == '\0' ? 1 : 0;
    const auto [fewer, more] = std::minmax(zeros[0], zeros[1]);
    return fewer == 0 && more > 0 && more * 4 >= beginning.size();
}

void refusePackedLibrary(const fileString& path)
{
    const ZipSource archive(path);
    if (std::any_of(archive.names().begin(), archive.names().end(),
                    [](const std::string& name) { return name.ends_with(".calib"); }))
        refuse(path, "is a packed library, which \"velk unpack\" takes apart");
}

}  // namespace

SourceKind sourceKind(const fileString& path)
{
    if (isFolder(path))
        throw FileError(path, "is a folder, not a file; give a furniture library (.sh3f) or a CSV file");
    requireFile(path, std::numeric_limits<std::uint64_t>::max());
    const std::string beginning = readBeginning(path, beginningBytes);
    if (beginning.starts_with(zipSignature)) {
        refusePackedLibrary(path);
        return SourceKind::Furniture;
    }
    if (beginning.starts_with(catalogSignature))
        refuse(path, "is a catalog file, which needs no building");
    if (isImage(beginning))
        refuse(path, "is an image");
    if (isUtf16(beginning))
        throw FileError(path, "is text in UTF-16; save it as UTF-8");
    if (beginning.find('\0') != std::string::npos)
        refuse(path, "is not text");
    return path.hasExtensionInAnyCase(furnitureExtension) ? SourceKind::Furniture : SourceKind::Csv;
}

}  // namespace VelkHost
