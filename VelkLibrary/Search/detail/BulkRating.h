#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Library::Search::detail {

struct CompiledSearch;
class NameBlock;
class SearchPlan;

/// Rates the entries from `begin` on, all of which there are, one after the other into `priorities`. `plan` is that of
/// the search, and not for ratings one by one. Throws std::bad_alloc.
void rateInBulk(const CompiledSearch& search, const SearchPlan& plan, const NameBlock& names, std::size_t begin,
                std::span<std::uint8_t> priorities);

}  // namespace Library::Search::detail
