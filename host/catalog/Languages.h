#pragma once

#include "host/catalog/Catalog.h"

#include <VelkCommon/Files/fileString.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace VelkHost {

/// How to build a catalog from a source.
struct BuildOptions
{
    LibraryKind kind = LibraryKind::User;
    std::string language;  ///< "de", "pt_PT" or "pt-PT"; empty for the names as the source has them
    std::string id;        ///< empty: the source's own
    std::string name;      ///< empty: the source's own
};

/// A language's code as sources write it: "pt_PT" for "pt-pt" and "PT_pt".
std::string normalisedLanguage(std::string_view language);

/// The languages in which to look for a text, best first: "pt_PT" and "pt" for "pt-pt", nothing for an
/// empty text. Those that are not `available` are left out.
/// Throws FileError, naming the `available` ones, when none is left.
std::vector<std::string> languageChain(std::string_view wanted, const std::set<std::string>& available,
                                       const fileString& source);

}  // namespace VelkHost
