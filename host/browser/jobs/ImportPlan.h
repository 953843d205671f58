#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QStringList>

#include <vector>

namespace VelkHost {

/// A file to import.
struct ImportSource
{
    fileString file;       ///< ".calibz" or ".calib", in any letter case
    bool replace = false;  ///< the library of its name that is there already
};

/// Whether a file can be one to import, by its extension.
bool isImportable(const fileString& file);

/// Where the library of a file goes: the user's library folder, under the file's name.
fileString importTarget(const fileString& file);

/// The files as sources; what is there already is to be kept.
std::vector<ImportSource> importSources(const QStringList& files);

/// The names of the libraries that are there already. Of sources with the same name only the first counts.
QStringList importedAlready(const std::vector<ImportSource>& sources);
/// Allows to replace these.
void replaceImported(std::vector<ImportSource>& sources);
/// Leaves these out.
void skipImported(std::vector<ImportSource>& sources);

}  // namespace VelkHost
