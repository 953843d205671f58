#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/UpdateData.h>

#include <string>
#include <vector>

namespace VelkHost {

/// Puts the new databases that a catalog update hands over in the place of the installed ones, for a
/// receiver of the update. An installed catalog that is open has to be closed before, and is reopened
/// afterwards, by whoever opened it. One thread at a time.
class CatalogInstaller
{
public:
    struct Failure
    {
        fileString catalog;  ///< the installed one, which is unchanged
        std::string reason;  ///< a sentence, UTF-8
    };

    /// Reads the new database, and replaces the installed one by it in a single step; makes its folder when
    /// missing. When the new one cannot be read or moved, the installed one stays and the failure is kept.
    bool install(const FileStringPair& paths);

    /// To be called when the update has ended. The update counts everything that it hands over as installed;
    /// this takes the catalogs that failed out of the hash files, so that the next update brings them again.
    void finish();

    /// The catalogs that were replaced or added.
    const std::vector<fileString>& installed() const noexcept { return installed_; }
    const std::vector<Failure>& failures() const noexcept { return failures_; }

private:
    std::vector<fileString> installed_;
    std::vector<Failure> failures_;
};

}  // namespace VelkHost
