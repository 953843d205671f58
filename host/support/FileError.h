#pragma once

#include "host/support/Reason.h"

#include <VelkCommon/Files/fileString.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace VelkHost {

/// Thrown when an operation fails because of a file or a folder. It holds the path, and a sentence for people that
/// tells what is wrong with it. Texts are UTF-8.
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
    /// The same sentence, for translation.
    const Reason& why() const noexcept { return why_; }

private:
    fileString path_;
    Reason why_;
    std::string reason_;
};

}  // namespace VelkHost
