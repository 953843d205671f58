#pragma once

/// @file
/// How fast a million prepared entries are rated at once, beside other ways to find terms in the same texts.

#include "BulkPeers.h"
#include "LeastTimes.h"
#include "LibraryNames.h"
#include "Measures.h"

#include <VelkLibrary/LibraryResultCategorizer.h>
#include <VelkLibrary/Search/PreparedNames.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

class BulkMeasures
{
public:
    /// `entries` must outlive this; `manyTerms` is a search for 32 terms, one in each group.
    BulkMeasures(const std::vector<Entry>& entries, const Library::Search::Info& manyTerms);

    /// Whether all ratings are those of the calls by name.
    bool agree();

    void registerAll();
    void print(const LeastTimes& times) const;
    std::vector<Measure> rows(const LeastTimes& times) const;

private:
    /// A search, and the peers that look for its terms.
    struct Search
    {
        std::string name;
        Library::Search::Info info;
        bool hasPeers;
        std::size_t hits = 0;
    };

    void registerPeers(const Search& search);
    double milliseconds(const LeastTimes& times, const std::string& search, const char* way) const;

    const std::vector<Entry>& entries_;
    Library::Search::PreparedNames names_;
    std::string block_;               // the texts, each filled up to a multiple of eight bytes
    std::vector<std::string> texts_;  // name and keywords of each entry, a line break between them
    std::unique_ptr<TrigramIndex> index_;
    std::vector<Search> searches_;
    std::vector<std::uint8_t> priorities_;
};

}  // namespace bench
