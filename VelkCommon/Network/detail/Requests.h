#pragma once

/// @file
/// What each kind of operation asks for.

#include <VelkCommon/Network/detail/Transfer.h>
#include <VelkCommon/Network/detail/TransferLimits.h>

#include <string>
#include <utility>
#include <vector>

namespace Velk::detail {

/// A header alone.
inline TransferRequest headerRequest(std::string url, std::vector<std::string> headers)
{
    TransferRequest request;
    request.url = std::move(url);
    request.headers = std::move(headers);
    request.method = TransferRequest::Method::head;
    request.silence = request.total = transferLimits().header;
    return request;
}

/// A body without a progress callback.
inline TransferRequest bodyRequest(std::string url, std::vector<std::string> headers, TransferRequest::Wanted wanted)
{
    TransferRequest request;
    request.url = std::move(url);
    request.headers = std::move(headers);
    request.wanted = wanted;
    request.silence = transferLimits().silence;
    request.total = transferLimits().total;
    return request;
}

}  // namespace Velk::detail
