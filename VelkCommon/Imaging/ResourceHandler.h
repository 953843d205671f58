#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Imaging/ImageObj.h>

#include <string_view>

/// The images that the host supplies by name.
class VELKCOMMON_EXPORT ResourceHandler
{
public:
    /// The process-wide handler.
    static ResourceHandler& getHandler();

    ResourceHandler(const ResourceHandler&) = delete;
    ResourceHandler& operator=(const ResourceHandler&) = delete;

    /// The host's image of this name (UTF-8); an image that is not valid when the host has none. Asks the
    /// host each time. Any thread.
    ImageObj getImage(std::string_view name) const;

private:
    ResourceHandler() = default;
};
