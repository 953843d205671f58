#include "host/support/InstallHost.h"

#include "host/support/DisplayText.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Platform/Platform.h>

namespace VelkHost {
namespace {

std::string_view severityName(error::Severity severity)
{
    switch (severity) {
        case error::Severity::Warning:
            return "warning: ";
        case error::Severity::Error:
            return "error: ";
        default:
            return "";
    }
}

/// Nobody is there to press a button, so every message is acknowledged.
error::Button showMessage(const error::Message& message)
{
    const std::string text = "velk: " + std::string(severityName(message.trait.severity));
    Velk::Platform::writeToStandardError(text + printableUtf8(message.formatted()) + "\n");
    return error::Button::Ok;
}

}  // namespace

void installHost()
{
    Velk::HostServices services;
    services.showMessage = showMessage;
    Velk::installHost(std::move(services));
}

}  // namespace VelkHost
