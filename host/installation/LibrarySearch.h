#pragma once

#include "host/catalog/Catalog.h"
#include "host/catalog/CatalogFile.h"
#include "host/catalog/ItemSizes.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/SearchPriority.h>

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// @file
/// The libraries that are searched, what is searched for, and what is found.

namespace VelkHost {

struct LoadedLibrary
{
    fileString path;
    std::shared_ptr<const Catalog> catalog;  ///< with names at least
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
LibrarySet loadLibraries(const std::vector<fileString>& paths, CatalogContent content = CatalogContent::Names);

/// Reads the libraries of the user's core, bonus, manufacturer and user folders. A folder that is not there yet holds
/// none; one that cannot be read counts as a broken library.
LibrarySet loadInstalledLibraries(CatalogContent content = CatalogContent::Names);

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
    RoomToFit room;           ///< where it is limited, only items that fit into it are hits
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

/// The name of a hit in its catalog.
const std::string& hitName(const Catalog& catalog, const Hit& hit);
/// The names of the folders above a hit, from the category down.
std::vector<std::string> hitPath(const Catalog& catalog, const Hit& hit);

}  // namespace VelkHost
