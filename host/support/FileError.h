#pragma once

#include "host/support/Reason.h"

#include <VelkCommon/Files/fileString.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace VelkHost {

/// What an operation throws that a file or a folder kept from its end: which one, and in a sentence for people what
/// is wrong with it. Texts are UTF-8.
class FileError : public std::runtime_error
{
public:
    FileError(const fileString& path, Reason why)
        : std::runtime_error(path.humanReadableString() + ": " + why.english()),
          path_(path),
          why_(std::move(why)),
          reason_(why_.english())
    {}

    const fileString& path() const noexcept { return path_; }
    /// The sentence without the path.
    const std::string& reason() const noexcept { return reason_; }
    /// The same for another language.
    const Reason& why() const noexcept { return why_; }

private:
    fileString path_;
    Reason why_;
    std::string reason_;
};

}  // namespace VelkHost
