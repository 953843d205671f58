#pragma once

#include "host/browser/BrowserOptions.h"

#include <QStringList>

#include <functional>
#include <string>

namespace VelkHost {

class BrowserWindow;

/// What the window's program was asked for.
struct ProgramOptions
{
    BrowserOptions window;
    fileString site;       ///< a published site to serve and to update from; empty for none
    std::string language;  ///< of the window; empty for the system's
    QStringList files;     ///< to import: absolute paths
    /// Whether a window that is open on the installation takes the files, instead of one of its own.
    bool isOneWindow = false;
};

/// The program from its command line to its end: opens the window and lets the user work until it is closed. What was
/// entered is saved then, and everything else under way is cut off after a moment. `shown` is called with the open
/// window before anything happens in it. The exit code is the application's; 1 when the window cannot open, which is
/// told on standard error; 0 when another start's window has taken the files and come to the front.
int runBrowser(int& argumentCount, char** arguments, ProgramOptions options,
               const std::function<void(BrowserWindow&)>& shown = {});

/// Lets the program end with a line on standard error and exit code 1 where nobody caught an exception. Returns true.
bool prepareLastWords() noexcept;

}  // namespace VelkHost
