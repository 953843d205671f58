#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>

/// The host's well-known folders. Each ends with a separator, however the host wrote it, because some
/// paths are made by plain concatenation. The host is asked anew at every call, because it may be
/// installed after the first one. The host creates the folders, except for the temporary one.
/// Any thread.
class VELKCOMMON_EXPORT PathUtils
{
public:
    /// The process-wide instance.
    static const PathUtils& getObject();

    /// The user's library databases; holds "errors.log".
    fileString getUserDatabasePath() const;
    /// The core library databases, which come with the application.
    fileString getCoreLibraryDatabasePath() const;
    /// The bonus library databases.
    fileString getBonusLibraryDatabasePath() const;
    /// The manufacturers' library databases.
    fileString getManufacturerLibraryPath() const;
    /// The manufacturer data file and the logos.
    fileString getManufacturerDataPath() const;
    /// Files that library content refers to, such as the textures of imported libraries.
    fileString getProprietaryLibraryReferencedFilesPath() const;
    /// The user's textures.
    fileString getUserTexturePath() const;
    /// The folder for downloads and unpacking, which is this user's alone and is created when missing.
    fileString getTempPath() const;

private:
    PathUtils() = default;
};
