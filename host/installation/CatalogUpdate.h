#pragma once

#include "host/installation/CatalogInstaller.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/UpdateData.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

/// @file
/// What every program that updates an installation needs around the module's catalog update.

namespace VelkHost {

/// The name under which a program asks the content service, unless the user gives another.
constexpr const char* updateProduct = "velk";
constexpr const char* updateVersion = "1";

/// The catalog files of an installation, as the update takes them.
struct InstalledCatalogs
{
    std::set<fileString> core;
    std::set<fileString> bonus;
    std::set<fileString> manufacturer;
};

/// The names of catalogs that an update is to add, with or without their extension.
struct AddedCatalogs
{
    std::vector<std::string> bonus;
    std::vector<std::string> manufacturer;
};

/// The catalogs that are installed and those to add. Makes the folders that are missing, the user's with the
/// error log among them. Throws FileError for a folder that cannot be made or read.
InstalledCatalogs installedCatalogs(const AddedCatalogs& added = {});

enum class UpdateOutcome { Cancelled, Failed, Installed, UpToDate };

/// How an update and the installation of what it brought ended; without a report it was cancelled.
UpdateOutcome updateOutcome(const std::optional<LibraryCatalogUpdate::UpdateData>& report,
                            const CatalogInstaller& installer);

}  // namespace VelkHost
