#pragma once

#include <VelkCommon/Files/fileString.h>

namespace VelkHost {

/// What a library can be made from.
enum class SourceKind {
    Furniture,  ///< a furniture library (".sh3f")
    Csv         ///< comma-separated values
};

/// Which kind of source a file is, judged by how it begins. Only the source's own reader sees whether it is sound.
/// Throws FileError for what cannot be read, and for what plainly is something else (a catalog file, a packed library,
/// an image, text in UTF-16, bytes that are no text), with what it is and what a source is.
SourceKind sourceKind(const fileString& path);

}  // namespace VelkHost
