#include "host/command/TourContent.h"

#include "host/catalog/CatalogFile.h"
#include "host/catalog/FurnitureLibrary.h"
#include "host/command/CatalogBuild.h"
#include "host/command/PackLibrary.h"
#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/TextTable.h"

#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>

namespace VelkHost {
namespace {

constexpr std::size_t coreLibraries = 2;

std::vector<fileString> furnitureIn(const fileString& folder)
{
    if (!isFolder(folder))
        throw FileError(folder, "is not a folder; name one with .sh3f files, or give --sample");
    std::vector<fileString> files = filesInFolder(folder, furnitureExtension);
    if (files.empty())
        throw FileError(folder, "holds no .sh3f file; give --sample to do without");
    const auto smaller = [](const fileString& left, const fileString& right) {
        return FileUtils::fileSize(left) < FileUtils::fileSize(right);
    };
    std::stable_sort(files.begin(), files.end(), smaller);
    return files;
}

/// The sample has pictures where real libraries have textures.
std::vector<std::pair<std::string, std::string>> picturesOf(const fileString& catalog)
{
    std::vector<std::pair<std::string, std::string>> files;
    for (const Item& item : readCatalog(catalog, CatalogContent::Everything).items)
        files.emplace_back("textures/" + std::to_string(files.size() + 1) + ".png", item.thumbnail);
    return files;
}

}  // namespace

TourContent::TourContent(const fileString& source, const fileString& folder, const fileString& publisher)
    : folder_(folder),
      manufacturers_(source.empty() ? std::vector<fileString>() : furnitureIn(source), publisher, folder)
{
    if (source.empty()) {
        libraries_ = {{{}, "Sample house", false}, {{}, "Sample office", false}, {{}, "Sample garden house", true}};
        return;
    }
    for (const fileString& file : furnitureIn(source))
        libraries_.push_back({file, file.stem().utf8(), libraries_.size() >= coreLibraries});
}

void TourContent::build(Output& output) const
{
    for (const Library& library : libraries_)
        buildLibrary(library, "", output);
    manufacturers_.build(output);
}

void TourContent::change(Output& output) const
{
    buildLibrary(libraries_.front(), "de", output);
    // The last one stays as it is, to show what does not travel.
    if (libraries_.size() > coreLibraries + 1)
        buildLibrary(libraries_[coreLibraries], "de", output);
    manufacturers_.change(output);
}

std::vector<std::string> TourContent::bonusNames() const
{
    std::vector<std::string> names;
    for (const Library& library : libraries_)
        if (library.bonus)
            names.push_back(library.name);
    return names;
}

void TourContent::buildLibrary(const Library& library, const std::string& language, Output& output) const
{
    BuildOptions options;
    options.kind = library.bonus ? LibraryKind::Bonus : LibraryKind::Core;
    options.language = language;
    if (library.source.empty()) {
        options.name = library.name;
        options.id = library.name;
    }
    const fileString folder = folder_ / (library.bonus ? U"bonus" : U"core");
    makeFolder(folder);
    fileString target = folder / fileString(library.name + ::Library::extensions::database);
    const fileString catalog =
        library.bonus ? folder_ / fileString("." + library.name + ::Library::extensions::database) : target;
    const BuiltCatalog built =
        library.source.empty() ? buildSample(catalog, options) : buildCatalog(library.source, catalog, options);
    if (library.bonus) {
        const FileReaper reaper(catalog);
        target = folder / fileString(library.name + ::Library::extensions::packed);
        if (library.source.empty())
            packWithFiles(catalog, picturesOf(catalog), target);
        else
            packWithFurniture(catalog, library.source, target);
    }
    output.write("  " + printableUtf8(target.stemWithExtension().utf8()) + ": " + counted(built.items, "item") +
                 " in " + counted(built.folders, "folder") + ", named in " + (language.empty() ? "English" : "German") +
                 "; " + byteText(static_cast<std::uint64_t>(FileUtils::fileSize(target))) +
                 (library.bonus ? " with models and textures" : "") + "\n");
}

}  // namespace VelkHost
