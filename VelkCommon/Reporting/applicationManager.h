#pragma once

#include <VelkCommon/Export.h>

#include <string>

/// The host application, reduced to what the library needs to know of it. A host derives its own class and
/// passes an object of it at start-up (HostServices::application).
class VELKCOMMON_EXPORT applicationManager
{
public:
    virtual ~applicationManager();

    /// A name that tells this application's (or this instance's) temporary folders from those of
    /// others; part of a folder name, so a plain name without separators. UTF-8. Any thread.
    virtual std::string getInstanceName() const = 0;
};

/// The host application. Set by Velk::installHost(); until then a default one named "velk", so it is null
/// only when a host assigns null.
VELKCOMMON_EXPORT extern applicationManager* gApp;

namespace Velk {

/// Makes `gApp` point to `application`, or to the default one when that is null. For installHost().
void useApplication(applicationManager* application) noexcept;

}  // namespace Velk
