#include "host/command/CatalogBuild.h"

#include "host/catalog/CatalogFile.h"
#include "host/catalog/CsvSource.h"
#include "host/catalog/FurnitureLibrary.h"
#include "host/catalog/SampleLibrary.h"
#include "host/catalog/SourceKind.h"
#include "host/support/ByteText.h"
#include "host/support/Folders.h"
#include "host/support/TextTable.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Text/TimeText.h>

#include <algorithm>

namespace VelkHost {
namespace {

BuiltCatalog write(Catalog catalog, const fileString& target, std::optional<CatalogFormat> format)
{
    WorkFolder::removeLeftovers(absolutePath(target).parentPath());
    catalog.created = Library::getTimeNowString();
    writeCatalog(catalog, target, format.value_or(neededFormat(catalog)));
    const auto hasThumbnail = [](const Item& item) { return !item.thumbnail.empty(); };
    const auto thumbnails = std::count_if(catalog.items.begin(), catalog.items.end(), hasThumbnail);
    return {target,
            catalog.name,
            catalog.language,
            catalog.items.size(),
            catalog.folders.size(),
            static_cast<std::size_t>(thumbnails),
            FileUtils::fileSize(target)};
}

Catalog readSource(const fileString& source, const BuildOptions& options)
{
    return sourceKind(source) == SourceKind::Furniture ? readFurnitureLibrary(source, options)
                                                       : readCsv(source, options);
}

}  // namespace

std::string BuiltCatalog::summary() const
{
    return path.humanReadableString() + ": " + name + (language.empty() ? "" : " (" + language + ")") + ", " +
           counted(items, "item") + " in " + counted(folders, "folder") + ", " + counted(thumbnails, "thumbnail") +
           ", " + kilobyteText(bytes);
}

BuiltCatalog buildCatalog(const fileString& source, const fileString& target, const BuildOptions& options,
                          std::optional<CatalogFormat> format)
{
    return write(readSource(source, options), target, format);
}

BuiltCatalog buildSample(const fileString& target, const BuildOptions& options, std::optional<CatalogFormat> format)
{
    return write(sampleLibrary(options), target, format);
}

}  // namespace VelkHost
