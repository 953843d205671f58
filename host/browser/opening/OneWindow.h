#pragma once

#include "host/support/SystemChannel.h"

#include <QStringList>

#include <chrono>
#include <memory>
#include <string>

namespace VelkHost {

/// How long a start waits for the window that is open already; one that is busy for longer may hang.
inline constexpr std::chrono::milliseconds openWindowPatience{5'000};

/// What a start of the program is.
struct ProgramStart
{
    /// Takes what later starts want to open. Null when they cannot be heard, and then each has a window of its own.
    std::unique_ptr<ChannelListener> listener;
    /// The open window has taken the files, so there is nothing left to do.
    bool isHandedOver = false;
};

/// The name under which the windows of an installation know each other: that of the folder with their settings, however
/// its path is written.
std::string windowName(const fileString& settingsFolder);

/// Hands the files, which are absolute paths, to the window of that name; without files, brings it to the front. When
/// there is none, or it does not take them in time, this start is to have a window.
ProgramStart startOf(const std::string& windowName, const QStringList& files,
                     std::chrono::milliseconds patience = openWindowPatience);

}  // namespace VelkHost
