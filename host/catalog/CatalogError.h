#pragma once

#include <VelkCommon/Files/fileString.h>

#include <stdexcept>
#include <string>

namespace VelkHost {

/// What every reader and writer of catalogs throws, and the only thing but std::bad_alloc: which file,
/// and in a sentence for people what is wrong with it. Texts are UTF-8.
class CatalogError : public std::runtime_error
{
public:
    CatalogError(const fileString& path, const std::string& reason)
        : std::runtime_error(path.humanReadableString() + ": " + reason), path_(path), reason_(reason)
    {}

    const fileString& path() const noexcept { return path_; }
    /// The sentence without the path.
    const std::string& reason() const noexcept { return reason_; }

private:
    fileString path_;
    std::string reason_;
};

}  // namespace VelkHost
