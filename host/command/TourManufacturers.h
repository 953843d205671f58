#pragma once

#include "host/catalog/FurnitureLibrary.h"
#include "host/support/Output.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <vector>

namespace VelkHost {

/// The manufacturers whom the tour's publisher publishes: those who made, or provide, what is in real furniture
/// libraries, or some of the sample's. The publisher keeps their cards as an installation does, in a home of its
/// own, and copies the data file to what it publishes; a picture of something they made serves as their logo.
class TourManufacturers
{
public:
    /// Of these furniture libraries (".sh3f"); without any, of the sample. Throws FileError.
    TourManufacturers(const std::vector<fileString>& libraries, const fileString& home, const fileString& content);

    /// Writes the data file and the logos, and tells about them.
    void build(Output& output) const;
    /// Copies the data file anew, and gives busiest() another logo.
    void change(Output& output) const;

    /// The id of the one with the most things.
    long busiest() const;

private:
    std::string logoName(std::size_t manufacturer) const;
    void writeLogo(std::size_t manufacturer, const std::string& image) const;
    void copyData() const;

    fileString home_;
    fileString content_;
    std::vector<FurnitureManufacturer> manufacturers_;  // by name; the ids count from 1
};

}  // namespace VelkHost
