#pragma once

#include "host/support/Output.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <vector>

namespace VelkHost {

/// What the tour's publisher publishes: a folder for "velk publish", built from real furniture libraries or
/// from the sample. The smaller libraries become core catalogs, the others packed bonus libraries with their
/// models and textures.
class TourContent
{
public:
    /// The furniture libraries (".sh3f") of `source`; with an empty one the sample. Throws CatalogError.
    TourContent(const fileString& source, const fileString& folder);

    /// Builds everything and tells about each library.
    void build(Output& output) const;
    /// Builds the smallest core library anew, with German names, and the smallest bonus library of several.
    void change(Output& output) const;

    /// The bonus libraries, for an installation to choose from; UTF-8.
    std::vector<std::string> bonusNames() const;

private:
    /// A library of the tour; without a source it is the sample.
    struct Library
    {
        fileString source;
        std::string name;
        bool bonus = false;
    };

    void buildLibrary(const Library& library, const std::string& language, Output& output) const;

    fileString folder_;
    std::vector<Library> libraries_;  // core ones first, each by size
};

}  // namespace VelkHost
