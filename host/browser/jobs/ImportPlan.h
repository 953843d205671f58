#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QStringList>

#include <vector>

namespace VelkHost {

/// A file to import.
struct ImportSource
{
    fileString file;       ///< ".calibz" or ".calib", in any letter case
    bool replace = false;  ///< whether it may replace an installed library of its name
};

/// Whether a file can be one to import, by its extension.
bool isImportable(const fileString& file);

/// Where the library of a file goes: the user's library folder, under the file's name.
fileString importTarget(const fileString& file);

/// The files as sources that replace nothing.
std::vector<ImportSource> importSources(const QStringList& files);

/// The names of the libraries that are installed already. Of sources with the same name only the first counts.
QStringList importedAlready(const std::vector<ImportSource>& sources);
/// Lets the sources replace those libraries.
void replaceImported(std::vector<ImportSource>& sources);
/// Leaves out the sources of those libraries.
void skipImported(std::vector<ImportSource>& sources);

}  // namespace VelkHost
