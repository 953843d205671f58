#pragma once

#include "host/catalog/Catalog.h"

#include <cstddef>

class QJsonObject;

namespace VelkHost {

/// What programs that read JSON are told about items (docs/command.md).

/// The measures that are known, in millimetres: "width", "depth" and "height".
QJsonObject sizeJson(const ItemSize& size);

/// Adds what is known about an item of `catalog` besides its names: "size", "creator", "licence", "price", "currency"
/// and "details", without what is not known.
void addKnown(const Catalog& catalog, std::size_t item, QJsonObject& object);

}  // namespace VelkHost
