#pragma once

#include "host/catalog/FurnitureLibrary.h"
#include "host/support/Output.h"

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <vector>

namespace VelkHost {

/// The manufacturers whom the tour's publisher publishes: those who made, or provide, what is in real furniture
/// libraries, or some of the sample's. The publisher keeps their cards as an installation does, in its own home,
/// and copies the data file to what it publishes; a picture of something they made serves as their logo.
class TourManufacturers
{
public:
    /// The manufacturers of these furniture libraries (".sh3f"); without any, those of the sample. Throws FileError.
    TourManufacturers(const std::vector<fileString>& libraries, const fileString& home, const fileString& content);

    /// Writes the data file and the logos, and prints how many there are.
    void build(Output& output) const;
    /// Copies the data file again, and gives busiest() another logo.
    void change(Output& output) const;

    /// The id of the manufacturer with the most items.
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
