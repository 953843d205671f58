#include "host/browser/jobs/ImportPlan.h"

#include "host/support/QtText.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <set>

namespace VelkHost {

bool isImportable(const fileString& file)
{
    return file.hasExtensionInAnyCase(Library::extensions::packed) ||
           file.hasExtensionInAnyCase(Library::extensions::database);
}

fileString importTarget(const fileString& file)
{
    return PathUtils::getObject().getUserDatabasePath() / (file.stem() + fileString(Library::extensions::database));
}

std::vector<ImportSource> importSources(const QStringList& files)
{
    std::vector<ImportSource> sources;
    for (const QString& file : files)
        sources.push_back({fileString(file.toStdString())});
    return sources;
}

QStringList importedAlready(const std::vector<ImportSource>& sources)
{
    QStringList names;
    for (const ImportSource& source : sources) {
        const QString name = qtText(source.file.stem().utf8());
        if (importTarget(source.file).pathExists() && !names.contains(name))
            names.append(name);
    }
    return names;
}

void replaceImported(std::vector<ImportSource>& sources)
{
    std::set<fileString> seen;
    for (ImportSource& source : sources) {
        const fileString target = importTarget(source.file);
        source.replace = target.pathExists() && seen.insert(target).second;
    }
}

void skipImported(std::vector<ImportSource>& sources)
{
    std::erase_if(sources, [](const ImportSource& source) { return importTarget(source.file).pathExists(); });
}

}  // namespace VelkHost
