#pragma once

#include "host/catalog/Catalog.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/SearchPriority.h>

#include <cstddef>
#include <memory>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

/// @file
/// One search over library files, as the command and the tour run it.

namespace VelkHost {

struct LoadedLibrary
{
    fileString path;
    std::shared_ptr<const Catalog> catalog;  ///< names only
};

struct BrokenLibrary
{
    fileString path;
    std::string reason;
};

struct LibrarySet
{
    std::vector<LoadedLibrary> loaded;
    std::vector<BrokenLibrary> broken;
    double milliseconds = 0;  ///< that reading took
};

/// Reads the libraries at `paths`: each a catalog file, or a folder, which stands for its ".calib" files,
/// sorted by name. A path that names nothing readable counts as broken; a file that is named twice is read once.
LibrarySet loadLibraries(const std::vector<fileString>& paths);

/// Reads the libraries of the user's core, bonus, manufacturer and user folders. A folder that is not there yet holds
/// none; one that cannot be read counts as a broken library.
LibrarySet loadInstalledLibraries();

struct InstalledLibraryFiles
{
    std::vector<fileString> files;      ///< folder by folder
    std::vector<FileError> unreadable;  ///< a folder that is there, or should be, and cannot be listed
};

/// The catalog files of those libraries.
InstalledLibraryFiles installedLibraryFiles();

/// Keeps only the loaded libraries whose ids are in `ids`.
void keepLibraries(LibrarySet& libraries, const std::vector<std::string>& ids);

/// The installed libraries' folders.
std::vector<fileString> installedLibraryFolders();

struct SearchRequest
{
    std::string text;         ///< UTF-8, as typed
    std::string uniqueId;     ///< not empty: the search is for this id, `text` plays no part
    bool legacy = false;      ///< `text` is plain words
    bool folders = true;      ///< rate folders
    bool items = true;        ///< rate items
    std::set<libType> types;  ///< kinds of library; empty for all
    std::string filter;       ///< the name of the filter that limits the libraries; empty without one
};

/// The search as the module takes it.
Library::Search::Info searchInfo(const SearchRequest& request);

struct Hit
{
    SearchPriority priority = Invalid;  ///< Invalid when found by its id
    bool isFolder = false;
    std::size_t library = 0;  ///< index in LibrarySet::loaded
    std::size_t index = 0;    ///< of the folder or item in its catalog
};

struct SearchResult
{
    std::vector<Hit> hits;  ///< best first; equal ones by lower-case name, then by library
    std::size_t ratedFolders = 0;
    std::size_t ratedItems = 0;
    std::size_t searchedLibraries = 0;
    double milliseconds = 0;  ///< that rating took, without reading and sorting
};

/// Rates the entries that `request` covers against `info`, which searchInfo() made from it. Any thread; once a stop
/// is requested, it ends soon with part of the hits.
SearchResult runSearch(const LibrarySet& libraries, const SearchRequest& request, const Library::Search::Info& info,
                       const std::stop_token& stop = {});

/// The name of a hit.
const std::string& hitName(const LibrarySet& libraries, const Hit& hit);
/// The names of the folders above a hit, from the category down.
std::vector<std::string> hitPath(const LibrarySet& libraries, const Hit& hit);

}  // namespace VelkHost
