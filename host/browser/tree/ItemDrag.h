#pragma once

#include "host/browser/tree/LibraryLoader.h"

#include <QPixmap>

#include <cstddef>

class QMimeData;

namespace VelkHost {

/// What a dragged item hands to the program that it is dropped on: its name as text, its picture, and for programs
/// that know libraries, under itemMimeType, a JSON object with the library's path ("library"), the item's unique
/// id ("id") and its name ("name"), and its size ("size", see addKnown()) where it is known. The caller owns the
/// result.
QMimeData* dragOf(const fileString& library, const Catalog& catalog, std::size_t item, const QPixmap& picture);

constexpr const char* itemMimeType = "application/x-velk-item+json";

}  // namespace VelkHost
