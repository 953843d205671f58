#pragma once

#include "host/catalog/ItemSizes.h"
#include "host/installation/IndexSearch.h"

#include <stop_token>

namespace VelkHost {

/// Keeps only the items that fit into the room, in their order, and counts the others in `hits`. Folders have no size
/// and go without being counted.
/// Once a stop is requested, it ends soon, and the hits are incomplete.
void keepFitting(SearchResult& hits, const RoomToFit& room, const std::stop_token& stop);

}  // namespace VelkHost
