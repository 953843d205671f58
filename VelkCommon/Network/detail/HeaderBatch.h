#pragma once

#include <VelkCommon/Network/Curl.h>

#include <functional>
#include <vector>

namespace Velk::detail {

using HeaderAnswered = std::function<void(std::size_t index, const Curl::HeaderAnswer& answer)>;

/// See Curl::getURLHeaders().
void requestHeaders(const std::vector<Curl::HeaderRequest>& requests, const HeaderAnswered& answered);

}  // namespace Velk::detail
