#pragma once

#include <VelkLibrary/Export.h>

#include <cstddef>
#include <memory>
#include <string_view>

class LibraryResultCategorizer;

namespace Library::Search {

namespace detail {
class NameBlock;
}

/// The names and keywords of many entries, made ready to be rated again and again, all at once, by
/// LibraryResultCategorizer::categorize(). Holds them in lower case, in one block of memory: about a fifth more than
/// the bytes of the texts, and 20 bytes for each entry.
///
/// Names and keywords are UTF-8 of any content. Entries have numbers in the order in which they were added, from 0
/// on. They count from the next close() on, and more may be added after it. One thread at a time may change the
/// names, while no other uses them; any number of threads may use them at the same time.
///
/// What adds throws std::bad_alloc when memory runs out, and std::length_error for a name of more than 268,435,455
/// bytes in lower case or more than 32 GiB of texts; then nothing has been added. One that was moved from may only be
/// assigned to or destroyed.
class VELKLIBRARY_EXPORT PreparedNames
{
public:
    /// None at first. Throws std::bad_alloc.
    PreparedNames();
    /// Takes over the entries of `other`.
    /// @{
    PreparedNames(PreparedNames&& other) noexcept;
    PreparedNames& operator=(PreparedNames&& other) noexcept;
    /// @}
    ~PreparedNames();

    /// Makes room for so many more entries, whose names and keywords have so many bytes together. Saves time; more
    /// and larger ones may be added.
    void reserve(std::size_t entries, std::size_t bytes);

    /// Adds a folder, to be rated as by categorizeFolderResult(name).
    void addFolder(std::string_view name);

    /// Adds an item without keywords, to be rated as by categorizeItemResult(name).
    void addItem(std::string_view name);

    /// Adds an item with all of its keywords in one text, to be rated as by categorizeItemResult(name, keywords).
    void addItem(std::string_view name, std::string_view keywords);

    /// Adds the entries of `other` that count, in their order. `other` may be this one.
    void append(const PreparedNames& other);

    /// From now on all entries count. Gives back memory that was reserved and not needed. Throws std::bad_alloc; then
    /// no more entries count than before.
    void close();

    /// How many entries count.
    std::size_t size() const noexcept;

    /// The name of an entry in lower case, as StringUtils::toLowerUtf8() makes it; empty if there is no such entry.
    /// Valid until an entry is added, or close() called.
    std::string_view lowerName(std::size_t entry) const noexcept;

    /// The bytes of memory that all entries take up.
    std::size_t memory() const noexcept;

private:
    friend class ::LibraryResultCategorizer;

    std::unique_ptr<detail::NameBlock> block_;
};

}  // namespace Library::Search
