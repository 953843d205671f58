#pragma once

namespace VelkHost {

/// What the program tells its caller (docs/command.md).
enum class ExitCode : int {
    Success = 0,        ///< done; a search has hits
    NoHit = 1,          ///< a search without hits, or a check that found something wrong
    Usage = 2,          ///< the command line makes no sense
    BrokenLibrary = 3,  ///< a library to search is missing or broken; the others were searched
    BuildFailed = 4,    ///< a catalog file could not be made, or an archive could not be unpacked
    OutputFailed = 5,   ///< standard output could not be written
    UpdateFailed = 6,   ///< something could not be updated; the rest was
    Cancelled = 7,      ///< ended by Ctrl-C; nothing is left half done
    ServiceFailed = 8,  ///< a site could not be published or served
    DataFailed = 9      ///< no such filter or manufacturer, or their file is damaged or cannot be written
};

}  // namespace VelkHost
