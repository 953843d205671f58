#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>

/// @file
/// A configuration for nginx that makes it answer as SiteService does (docs/content-service.md).

namespace VelkHost {

struct NginxConfiguration
{
    std::string maps;       ///< for the http block: the edition's table; new with each edition
    std::string locations;  ///< for a server block: what the service's paths do
};

/// The configuration for the edition in force in `site`, whose path nginx will read files at. Throws
/// FileError for a site without one, and for a path that cannot stand in a configuration.
NginxConfiguration nginxConfiguration(const fileString& site);

/// Writes "velk-maps.conf" and "velk-locations.conf" into the folder, which is made when missing, each in one
/// step. Throws FileError.
void writeNginxConfiguration(const fileString& site, const fileString& folder);

}  // namespace VelkHost
