#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Finds the places of some literals, or the entries with them, in all texts at once, and rates nothing. Returns how
/// many it found.
using BulkSearch = std::function<std::size_t()>;

/// Looks for a byte that is not there: all bytes pass through the processor once.
BulkSearch memchrOver(const std::string& block);

/// One scan of the block for all literals, in block mode.
BulkSearch hyperscanOver(const std::string& block, const std::vector<std::string>& literals);

/// One scan of the block for a pattern of alternatives.
BulkSearch re2Over(const std::string& block, const std::vector<std::string>& literals);

/// A full-text index of trigrams in memory. It cannot look for fewer than three characters.
class TrigramIndex
{
public:
    explicit TrigramIndex(const std::vector<std::string>& texts);
    TrigramIndex(const TrigramIndex&) = delete;
    TrigramIndex& operator=(const TrigramIndex&) = delete;
    ~TrigramIndex();

    /// The entries with any of the literals; null if one is too short.
    BulkSearch search(const std::vector<std::string>& literals) const;

    std::size_t bytes() const;

private:
    struct Database;
    Database* database_;
};

}  // namespace bench
