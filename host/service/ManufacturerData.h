#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <vector>

namespace VelkHost {

/// A logo that a manufacturer's card names.
struct ManufacturerLogo
{
    std::string card;  ///< the manufacturer's name
    std::string name;  ///< of its file
};

/// Checks a file of manufacturers' cards as clients will read it, and returns the logos of the cards that
/// are not deleted. Throws FileError for a file that clients would not take.
std::vector<ManufacturerLogo> readManufacturerLogos(const fileString& path);

}  // namespace VelkHost
