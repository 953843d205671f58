#pragma once

#include "host/installation/SearchIndex.h"

#include <vector>

namespace VelkHost {

/// Puts entries of a state in order.
EntryOrder sortedEntries(const IndexState& state, const std::vector<EntryNumber>& entries);

/// One order of two, which have no entry in common.
EntryOrder mergedOrders(const IndexState& state, const EntryOrder& one, const EntryOrder& other);

}  // namespace VelkHost
