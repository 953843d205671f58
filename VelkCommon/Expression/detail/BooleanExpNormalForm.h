#pragma once

#include <VelkCommon/Expression/BooleanExp.h>

namespace Velk::detail {

/// Rewrites `root` as BooleanExp::convertToDisjunctiveNormalForm() does, and throws as it does.
void makeNormalForm(BooleanExp::Group& root);

}  // namespace Velk::detail
