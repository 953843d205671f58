#include "host/installation/LibrarySearch.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/Parallel.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

namespace VelkHost {
namespace {

class Stopwatch
{
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// The files that `path` stands for.
std::vector<fileString> libraryFiles(const fileString& path)
{
    if (!isFolder(path))
        return {path};
    std::vector<fileString> files = filesInFolder(path, Library::extensions::database);
    if (files.empty())
        throw FileError(path, "holds no .calib file; make one with \"velk catalog build\"");
    return files;
}

/// A library that is to be loaded, and what came of it.
struct Loading
{
    fileString path;
    std::shared_ptr<const Catalog> catalog;
    std::optional<BrokenLibrary> broken;
};

/// Each file once, and the paths that name none.
std::vector<Loading> loadingsOf(const std::vector<fileString>& paths)
{
    std::vector<Loading> loadings;
    std::set<fileString> seen;
    for (const fileString& path : paths) {
        try {
            for (const fileString& file : libraryFiles(path))
                if (seen.insert(file).second)
                    loadings.push_back({file, nullptr, std::nullopt});
        } catch (const FileError& error) {
            loadings.push_back({path, nullptr, BrokenLibrary{error.path(), error.reason()}});
        }
    }
    return loadings;
}

void load(Loading& loading, CatalogContent content)
{
    if (loading.broken)
        return;
    try {
        loading.catalog = std::make_shared<const Catalog>(readCatalog(loading.path, content));
    } catch (const FileError& error) {
        loading.broken = BrokenLibrary{error.path(), error.reason()};
    }
}

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

}  // namespace

LibrarySet loadLibraries(const std::vector<fileString>& paths, CatalogContent content)
{
    const Stopwatch watch;
    std::vector<Loading> loadings = loadingsOf(paths);
    forEachInParallel(loadings.size(), [&](std::size_t i) { load(loadings[i], content); });
    LibrarySet libraries;
    for (Loading& loading : loadings) {
        if (loading.broken)
            libraries.broken.push_back(std::move(*loading.broken));
        else
            libraries.loaded.push_back({loading.path, std::move(loading.catalog)});
    }
    libraries.milliseconds = watch.milliseconds();
    return libraries;
}

LibrarySet loadInstalledLibraries(CatalogContent content)
{
    const InstalledLibraryFiles installed = installedLibraryFiles();
    LibrarySet libraries = loadLibraries(installed.files, content);
    std::vector<BrokenLibrary> broken;
    for (const FileError& error : installed.unreadable)
        broken.push_back({error.path(), error.reason()});
    libraries.broken.insert(libraries.broken.begin(), broken.begin(), broken.end());
    return libraries;
}

InstalledLibraryFiles installedLibraryFiles()
{
    InstalledLibraryFiles installed;
    for (const fileString& folder : installedLibraryFolders()) {
        const std::optional<Absence> absence = absenceOf(folder);
        if (absence && absence->isFree)
            continue;
        try {
            if (absence)
                throw FileError(folder, absence->why);
            const std::vector<fileString> found = filesInFolder(folder, Library::extensions::database);
            installed.files.insert(installed.files.end(), found.begin(), found.end());
        } catch (const FileError& error) {
            installed.unreadable.push_back(error);
        }
    }
    return installed;
}

void keepLibraries(LibrarySet& libraries, const std::vector<std::string>& ids)
{
    const std::set<std::string> kept(ids.begin(), ids.end());
    std::erase_if(libraries.loaded, [&](const LoadedLibrary& library) { return !kept.contains(library.catalog->id); });
}

std::vector<fileString> installedLibraryFolders()
{
    const PathUtils& paths = PathUtils::getObject();
    return {paths.getCoreLibraryDatabasePath(), paths.getBonusLibraryDatabasePath(), paths.getManufacturerLibraryPath(),
            paths.getUserDatabasePath()};
}

Library::Search::Info searchInfo(const SearchRequest& request)
{
    Library::Search::Info info(request.types);
    if (!request.uniqueId.empty())
        info.setupUniqueIdSearch(request.uniqueId);
    else if (request.legacy)
        info.setupLegacySearch(words(request.text), request.types);
    else
        info.parseTree = Library::Search::parseSearchTerms(StringConvert::toUnicodeFromUtf8(request.text));
    return info;
}

const std::string& hitName(const Catalog& catalog, const Hit& hit)
{
    return hit.isFolder ? catalog.folders[hit.index].name : catalog.items[hit.index].name;
}

std::vector<std::string> hitPath(const Catalog& catalog, const Hit& hit)
{
    return catalog.folderPath(hit.isFolder ? catalog.folders[hit.index].parent : catalog.items[hit.index].folder);
}

}  // namespace VelkHost
