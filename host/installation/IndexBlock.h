#pragma once

#include "host/installation/LibrarySearch.h"

#include <VelkLibrary/Search/PreparedNames.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace VelkHost {

/// The place of an entry in its library: first all folders, then all items.
struct EntryPlace
{
    const LoadedLibrary* library = nullptr;
    std::size_t place = 0;

    bool isFolder() const { return place < library->catalog->folders.size(); }
    /// Of the folder or item in its catalog.
    std::size_t index() const { return isFolder() ? place : place - library->catalog->folders.size(); }
};

/// How many entries a library has.
inline std::size_t entriesOf(const LoadedLibrary& library)
{
    return library.catalog->folders.size() + library.catalog->items.size();
}

/// The entries of several small libraries, or a part of those of a large one, ready to be rated at once. Rating is
/// fastest in blocks of many entries, whatever libraries they are from. Any thread may read a block.
class IndexBlock
{
public:
    /// The most entries of a block, so that 16 bits tell one of them.
    static constexpr std::size_t most = std::size_t{1} << 16;

    /// A run of entries of one library, which is there for as long as a state of the index holds it: a block may
    /// outlive libraries that it was made for.
    struct Part
    {
        const LoadedLibrary* library = nullptr;
        std::size_t begin = 0;  ///< the first of them in the block
        std::size_t place = 0;  ///< and in the library
        std::size_t count = 0;
    };

    /// The entries of `parts`, whose `begin` is set here; those that stand in `earlier` at the beginning are copied
    /// from it. Throws std::bad_alloc.
    explicit IndexBlock(std::vector<Part> parts, const IndexBlock* earlier = nullptr);

    const std::vector<Part>& parts() const { return parts_; }
    const Library::Search::PreparedNames& names() const { return names_; }
    std::size_t size() const { return names_.size(); }

    /// The number of the part that holds an entry.
    std::size_t partOf(std::size_t entry) const;
    EntryPlace placeOf(std::size_t entry) const;

private:
    void addNames(const Part& part);

    std::vector<Part> parts_;
    Library::Search::PreparedNames names_;
};

}  // namespace VelkHost
