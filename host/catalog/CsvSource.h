#pragma once

#include "host/catalog/Languages.h"

namespace VelkHost {

/// Reads items from comma-separated values (docs/command.md has the columns): the first record names the
/// columns, each further one is an item. "name" is required; "id", "category", "folder", "keywords" and
/// "files" are optional. Name, category, folder and keywords may also come translated ("name_de").
/// "width",
/// "depth" and "height" are millimetres, "price" a number with its "currency" in three letters; "creator", "licence"
/// and "property NAME" are texts. Other columns are ignored. The text is UTF-8, or Windows-1252 where it is not
/// well-formed UTF-8. Throws FileError, with the line's number.
Catalog readCsv(const fileString& path, const BuildOptions& options);

}  // namespace VelkHost
