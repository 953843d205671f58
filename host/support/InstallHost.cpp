#include "host/support/InstallHost.h"

#include "host/support/DisplayText.h"
#include "host/support/Folders.h"
#include "host/support/System.h"

#include <VelkCommon/HostServices.h>

#include <QString>

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
    writeToError(text + printableUtf8(message.formatted()) + "\n");
    return error::Button::Ok;
}

/// Nobody is there to debug, either.
bool reportAssertion(const Velk::AssertionReport& report)
{
    writeToError("velk: " + printableUtf8(report.expression) + " (" + report.sourceFile + ":" +
                 std::to_string(report.line) + ")\n");
    return false;
}

Velk::HostFolders foldersBelow(const fileString& home)
{
    Velk::HostFolders folders;
    folders.userDatabase = home / U"user";
    folders.coreLibraryDatabase = home / U"core";
    folders.bonusLibraryDatabase = home / U"bonus";
    folders.manufacturerLibrary = home / U"manufacturer";
    folders.manufacturerData = home / U"manufacturer-data";
    folders.proprietaryLibraryReferencedFiles = home / U"referenced";
    folders.userTexture = home / U"textures";
    folders.temp = home / U"temp";
    return folders;
}

}  // namespace

Velk::HostServices hostServices(const fileString& home)
{
    Velk::HostServices services;
    const fileString chosen = home.empty() ? fileString(qEnvironmentVariable("VELK_HOME").toStdString()) : home;
    if (!chosen.empty())
        services.folders = foldersBelow(absolutePath(chosen));
    const fileString certificates(qEnvironmentVariable("VELK_CERTIFICATES").toStdString());
    if (!certificates.empty())
        services.certificateFile = absolutePath(certificates);
    services.showMessage = showMessage;
    services.reportAssertion = reportAssertion;
    return services;
}

void installHost(const fileString& home)
{
    Velk::installHost(hostServices(home));
}

}  // namespace VelkHost
