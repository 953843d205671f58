#pragma once

#include "host/support/Reason.h"

#include <VelkCommon/Network/WebUtils.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace VelkHost {

/// Why nothing was done to an installation's filters or manufacturers, and what to do about it.
class DataError : public std::runtime_error
{
public:
    explicit DataError(Reason why, std::string advice = {})
        : std::runtime_error(why.english()), why_(std::move(why)), advice_(std::move(advice))
    {}

    /// The text of what(), for translation.
    const Reason& why() const noexcept { return why_; }

    /// What helps: lines of the program's own text; may be empty.
    const std::string& advice() const noexcept { return advice_; }

private:
    Reason why_;
    std::string advice_;
};

/// A file that could not be fetched from a service. The transfer's reason is in English.
class TransferError : public DataError
{
public:
    /// Neither shows a name and password in the address.
    TransferError(const std::string& url, const std::string& reason)
        : DataError(Reason("%1: %2", {WebUtils::withoutUserInfo(url), WebUtils::withoutUserInfo(reason)})),
          url_(WebUtils::withoutUserInfo(url))
    {}

    const std::string& url() const noexcept { return url_; }

private:
    std::string url_;
};

}  // namespace VelkHost
