#pragma once

#include "ServedSiteTest.h"

namespace test {

/// A base for tests that update an installation from the published site.
class ServedInstallation : public ServedSiteTest
{
protected:
    /// The stems of the libraries that the installation has beside those of the index.
    static const std::string bonusName;
    static const std::string manufacturerName;

    fileString home() const { return folder() / U"home"; }
    fileString home(const std::string& path) const { return home() / fileString(path); }
    std::uint64_t indexBytes() const { return published("Standard_Core_Content_Index.txt").size(); }

    /// Checks that everything is installed as it is published.
    void expectCurrent() const;
};

}  // namespace test
