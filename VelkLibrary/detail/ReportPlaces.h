#pragma once

/// @file
/// The places that reports come from. Hosts recognise reports by them, so they are part of what the module
/// promises: names and numbers that stay as they are, wherever the code moves in the source text.

#include <VelkCommon/Reporting/ReportPlace.h>

namespace Library::detail::places {

using Velk::ReportPlace;

// The search.
inline constexpr ReportPlace unknownNode{"Search/Info", 142};  ///< of a search expression

// The catalog update.
inline constexpr ReportPlace accessNotGranted{"LibraryCatalogUpdater", 30};  ///< to an installed file
inline constexpr ReportPlace noApplication{"LibraryCatalogUpdater", 98};     ///< that could name a folder

// The file of filters.
inline constexpr ReportPlace filterFileDamaged{"LibraryFilterManager", 183};
inline constexpr ReportPlace filterFileUnwritable{"LibraryFilterManager", 226};
inline constexpr ReportPlace filterFileNotWritten{"LibraryFilterManager", 231};
inline constexpr ReportPlace filtersNotMerged{"LibraryFilterManager", 292};

// The file of manufacturers.
inline constexpr ReportPlace manufacturerFileCheck{"Manufacturer/ManufacturerManager", 229};  ///< finds it unwritable
inline constexpr ReportPlace manufacturerFileWrite{"Manufacturer/ManufacturerManager", 244};  ///< likewise

// The nodes of the browser's tree.
inline constexpr ReportPlace categoryWithItemId{"UI/TreeCategoryData", 17};
inline constexpr ReportPlace folderWithItemId{"UI/TreeFolderData", 15};
inline constexpr ReportPlace itemWithOtherId{"UI/TreeItemData", 40};
inline constexpr ReportPlace foreignNodeCompared{"UI/TreeData", 78};

}  // namespace Library::detail::places
