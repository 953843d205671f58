#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Manufacturer/ManufacturerUpdate.h>

#include <string>

/// @file
/// The steps of an update from the content service that do not need the manager.

namespace Library::detail {

/// Fetches the service's data file to `file` and reads it. True when it could be read; otherwise the outcome
/// says why.
bool fetchServiceFile(const std::u32string& dataUrl, const fileString& file, ManufacturerUpdate& update);

/// Why the card's logo did not come from the service; empty when it did.
std::string fetchLogo(const Manufacturer& card, const std::u32string& logoUrl);

/// How the offered cards differ from those that are held, by ascending id. Logos are not compared.
std::vector<ManufacturerChange> compareCards(const ManufacturerFile::Cards& held,
                                             const ManufacturerFile::Cards& offered);

/// Fetches the logos of the offered cards that are new, or newer than the one held, whose logo is removed
/// first. Records in `changes` what became of each logo.
void fetchLogos(const ManufacturerFile::Cards& held, const ManufacturerFile::Cards& offered,
                const std::u32string& logoUrl, std::vector<ManufacturerChange>& changes);

}  // namespace Library::detail
