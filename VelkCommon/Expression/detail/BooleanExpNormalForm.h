#pragma once

#include <VelkCommon/Expression/BooleanExp.h>

#include <functional>
#include <span>

namespace Velk::detail {

/// Rewrites `root` as BooleanExp::convertToDisjunctiveNormalForm() does, and throws as it does.
void makeNormalForm(BooleanExp::Group& root);

/// Calls `f` as BooleanExp::forEachAlternative() does, and throws as it does.
void forEachAlternative(BooleanExp::Group& root, const std::function<void(std::span<const BooleanExp::Literal>)>& f);

}  // namespace Velk::detail
