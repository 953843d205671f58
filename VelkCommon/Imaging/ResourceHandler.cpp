#include <VelkCommon/Imaging/ResourceHandler.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/detail/AskHost.h>
#include <VelkCommon/detail/NeverDestroyed.h>

ResourceHandler& ResourceHandler::getHandler()
{
    static Velk::detail::NeverDestroyed<ResourceHandler> handler([] { return ResourceHandler(); });
    return *handler;
}

ImageObj ResourceHandler::getImage(std::string_view name) const
{
    return ImageObj(Velk::detail::askHost(Velk::host()->loadImage, name).value_or(QImage()));
}
