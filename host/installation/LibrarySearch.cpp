#include "host/installation/LibrarySearch.h"

#include "host/catalog/CatalogFile.h"
#include "host/installation/HitOrder.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include <algorithm>
#include <chrono>
#include <sstream>

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

void loadLibrary(LibrarySet& libraries, const fileString& path)
{
    try {
        libraries.loaded.push_back({path, std::make_shared<const Catalog>(readCatalog(path, CatalogContent::Names))});
    } catch (const FileError& error) {
        libraries.broken.push_back({error.path(), error.reason()});
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

/// Goes through the libraries that a request covers.
class Rating
{
public:
    Rating(const LibrarySet& libraries, const SearchRequest& request, const Library::Search::Info& info,
           const std::stop_token& stop)
        : libraries_(libraries), request_(request), info_(info), stop_(stop), categorizer_(info)
    {}

    SearchResult run()
    {
        const Stopwatch watch;
        for (std::size_t i = 0; i < libraries_.loaded.size(); ++i)
            if (info_.libTypes.empty() || info_.libTypes.contains(toLibType(libraries_.loaded[i].catalog->kind)))
                rateLibrary(i);
        result_.milliseconds = watch.milliseconds();
        if (!stop_.stop_requested())
            result_.hits = inOrder(libraries_, result_.hits);
        return std::move(result_);
    }

private:
    void rateLibrary(std::size_t library)
    {
        const Catalog& catalog = *libraries_.loaded[library].catalog;
        ++result_.searchedLibraries;
        if (!info_.uniqueId.empty())
            return findId(library, catalog);
        if (request_.folders) {
            for (std::size_t i = 0; i < catalog.folders.size() && !mustStop(i); ++i)
                keep({categorizer_.categorizeFolderResult(catalog.folders[i].name), true, library, i});
            result_.ratedFolders += catalog.folders.size();
        }
        if (request_.items) {
            for (std::size_t i = 0; i < catalog.items.size() && !mustStop(i); ++i)
                keep({categorizer_.categorizeItemResult(catalog.items[i].name, catalog.items[i].keywords), false,
                      library, i});
            result_.ratedItems += catalog.items.size();
        }
    }

    /// Called for each entry, but looks only at every so many, since looking takes time.
    bool mustStop(std::size_t entry) const { return entry % 1024 == 0 && stop_.stop_requested(); }

    void keep(const Hit& hit)
    {
        if (hit.priority != Invalid)
            result_.hits.push_back(hit);
    }

    void findId(std::size_t library, const Catalog& catalog)
    {
        for (std::size_t i = 0; i < catalog.items.size(); ++i)
            if (catalog.items[i].uniqueId == info_.uniqueId)
                result_.hits.push_back({Invalid, false, library, i});
        result_.ratedItems += catalog.items.size();
    }

    const LibrarySet& libraries_;
    const SearchRequest& request_;
    const Library::Search::Info& info_;
    const std::stop_token& stop_;
    LibraryResultCategorizer categorizer_;
    SearchResult result_;
};

}  // namespace

LibrarySet loadLibraries(const std::vector<fileString>& paths)
{
    const Stopwatch watch;
    LibrarySet libraries;
    std::set<fileString> seen;
    for (const fileString& path : paths) {
        try {
            for (const fileString& file : libraryFiles(path))
                if (seen.insert(file).second)
                    loadLibrary(libraries, file);
        } catch (const FileError& error) {
            libraries.broken.push_back({error.path(), error.reason()});
        }
    }
    libraries.milliseconds = watch.milliseconds();
    return libraries;
}

LibrarySet loadInstalledLibraries()
{
    const InstalledLibraryFiles installed = installedLibraryFiles();
    LibrarySet libraries = loadLibraries(installed.files);
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

SearchResult runSearch(const LibrarySet& libraries, const SearchRequest& request, const Library::Search::Info& info,
                       const std::stop_token& stop)
{
    return Rating(libraries, request, info, stop).run();
}

const std::string& hitName(const LibrarySet& libraries, const Hit& hit)
{
    const Catalog& catalog = *libraries.loaded[hit.library].catalog;
    return hit.isFolder ? catalog.folders[hit.index].name : catalog.items[hit.index].name;
}

std::vector<std::string> hitPath(const LibrarySet& libraries, const Hit& hit)
{
    const Catalog& catalog = *libraries.loaded[hit.library].catalog;
    return catalog.folderPath(hit.isFolder ? catalog.folders[hit.index].parent : catalog.items[hit.index].folder);
}

}  // namespace VelkHost
