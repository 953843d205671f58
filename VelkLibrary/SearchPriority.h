#pragma once

#include <VelkLibrary/Export.h>

#include <cstdint>
#include <string>

/// How well one library entry matches a search. A smaller non-zero value is a better match, zero is no
/// match. For each kind of match the item's value stands before the folder's, so that one order ranks
/// items and folders together.
enum SearchPriority : std::int16_t {
    Invalid = 0,                        ///< no match, or excluded
    ItemExactName = 1,                  ///< the item's name is the whole search text
    FolderExactName = 2,                ///< the folder's name is the whole search text
    ItemBeginsWithWord = 3,             ///< the item's name begins with the term as a whole word
    FolderBeginsWithWord = 4,           ///< the folder's name begins with the term as a whole word
    ItemContainsWord = 5,               ///< the item's name contains the term as a whole word
    FolderContainsWord = 6,             ///< the folder's name contains the term as a whole word
    ItemBeginsWithSequence = 7,         ///< the item's name begins with the term's characters
    FolderBeginsWithSequence = 8,       ///< the folder's name begins with the term's characters
    KeywordsContainWord = 9,            ///< the item's keywords contain the term as a whole word
    ItemWordBeginsWithSequence = 10,    ///< a word of the item's name begins with the term's characters
    FolderWordBeginsWithSequence = 11,  ///< a word of the folder's name begins with the term's characters
    ItemContainsSequence = 12,          ///< the item's name contains the term's characters anywhere
    FolderContainsSequence = 13,        ///< the folder's name contains the term's characters anywhere
    KeywordsContainSequence = 14        ///< the item's keywords contain the term's characters anywhere
};

/// Operations on priorities.
class VELKLIBRARY_EXPORT SearchPriorityUtils
{
public:
    SearchPriorityUtils() = delete;

    /// Whether `priority` is one of the six folder matches; false for any other value. Any thread.
    static bool IsFolder(SearchPriority priority) noexcept;

    /// The better of two priorities: when either is zero, which is no match, the other one; otherwise the
    /// numerically smaller one. Any thread.
    static SearchPriority higher(SearchPriority a, SearchPriority b) noexcept;

    /// The value's name for logs, such as "ItemExactName". Empty for `ItemWordBeginsWithSequence`, which
    /// has no text, and for any value outside the enumeration; such a value stays in the table with its empty
    /// text once it was asked for. One thread at a time.
    static std::string to_string(SearchPriority priority);
};
