#pragma once

#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Search/ParseTree.h>

namespace Library::Search::detail {

/// The alternatives of an expression in normal form, of which `root` is the whole; without those that require
/// nothing. Also takes trees that no search text leads to: a group within a group is read in its place, and a node
/// that is neither term nor group is reported as an assertion and left out. Moves the texts out of the terms.
VELKLIBRARY_EXPORT ParseTree alternativesOf(const BooleanExp::Group& root);

}  // namespace Library::Search::detail
