#pragma once

#include <VelkCommon/Expression/BooleanExp.h>

#include <memory>
#include <string_view>

namespace Velk::detail {

/// The group that `text` stands for; null when there is nothing to search for. Throws as
/// BooleanExp::parse() does.
std::unique_ptr<BooleanExp::Group> parseExpression(std::u32string_view text);

}  // namespace Velk::detail
