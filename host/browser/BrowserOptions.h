#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace VelkHost {

/// The options with which the browser starts.
struct BrowserOptions
{
    fileString home;      ///< the installation's folder; empty for the usual one
    std::string service;  ///< the content service's address; may be empty
};

}  // namespace VelkHost
