#pragma once

#include "host/command/TourManufacturers.h"
#include "host/support/Output.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <vector>

namespace VelkHost {

/// What the tour's publisher publishes: a folder for "velk publish", built from real furniture libraries or
/// from the sample. The smaller libraries become core catalogs, the others packed bonus libraries with their
/// models and textures; the people who made them become manufacturers.
class TourContent
{
public:
    /// Uses the furniture libraries (".sh3f") in the folder `source`, or the sample when `source` is empty. The
    /// publisher keeps the manufacturers in `publisher`. Throws FileError.
    TourContent(const fileString& source, const fileString& folder, const fileString& publisher);

    /// Builds everything, and prints a line about each library.
    void build(Output& output) const;
    /// Builds the smallest core library again, with German names, and the smallest bonus library too if there are
    /// several. Takes over the publisher's changes to the manufacturers' data, and gives one manufacturer another logo.
    void change(Output& output) const;

    /// The bonus libraries, for an installation to choose from; UTF-8.
    std::vector<std::string> bonusNames() const;
    /// The manufacturer who gets another logo.
    long changedManufacturer() const { return manufacturers_.busiest(); }

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
    TourManufacturers manufacturers_;
};

}  // namespace VelkHost
