#pragma once

#include <VelkCommon/Expression/BooleanExp.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Search/ParseTree.h>

namespace Library::Search::detail {

/// The alternatives of an expression, without those that require nothing. Moves the texts out of the terms. Also takes
/// expressions that no search text leads to: a node that is neither term nor group is reported as an assertion and
/// left out. Throws std::length_error as BooleanExp::forEachAlternative() does.
VELKLIBRARY_EXPORT ParseTree alternativesOf(BooleanExp& expression);

}  // namespace Library::Search::detail
