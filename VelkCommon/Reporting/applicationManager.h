#pragma once

#include <VelkCommon/Export.h>

#include <string>

/// The host application, as far as the library asks it something. A host derives its own and hands it
/// over at start-up (HostServices::application).
class VELKCOMMON_EXPORT applicationManager
{
public:
    virtual ~applicationManager();

    /// A name that tells this application's (or this instance's) temporary folders from those of
    /// others; part of a folder name, so a plain name without separators. UTF-8. Any thread.
    virtual std::string getInstanceName() const = 0;
};

/// The host application. Set by Velk::installHost(); a default one named "velk" until then, so it is
/// null only when a host sets it so.
VELKCOMMON_EXPORT extern applicationManager* gApp;

namespace Velk {

/// Points `gApp` to `application`, or to the default one for null. For installHost().
void useApplication(applicationManager* application) noexcept;

}  // namespace Velk
