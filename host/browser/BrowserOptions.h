#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace VelkHost {

/// What the browser is started with.
struct BrowserOptions
{
    fileString home;      ///< the installation's folder; empty for the usual one
    std::string service;  ///< the content service's address; may be empty
};

}  // namespace VelkHost
