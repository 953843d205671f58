#pragma once

#include <VelkLibrary/Search/detail/LiteralMatcher.h>
#include <VelkLibrary/SearchPriority.h>

namespace Library::Search::detail {

/// What each kind of match is worth for one kind of name.
struct PrioritySlots
{
    SearchPriority exact;
    SearchPriority beginsWithWord;
    SearchPriority containsWord;
    SearchPriority beginsWithSequence;
    SearchPriority wordBeginsWithSequence;
    SearchPriority containsSequence;
};

inline constexpr PrioritySlots folderSlots = {
    FolderExactName,          FolderBeginsWithWord,         FolderContainsWord,
    FolderBeginsWithSequence, FolderWordBeginsWithSequence, FolderContainsSequence,
};
inline constexpr PrioritySlots itemSlots = {
    ItemExactName,          ItemBeginsWithWord,         ItemContainsWord,
    ItemBeginsWithSequence, ItemWordBeginsWithSequence, ItemContainsSequence,
};

constexpr PlaceWorths placeWorths(const PrioritySlots& slots)
{
    return {
        .begin = {slots.beginsWithSequence, slots.beginsWithWord},
        .name = {{slots.containsSequence, slots.containsSequence}, {slots.wordBeginsWithSequence, slots.containsWord}},
        .keywords = {{KeywordsContainSequence, KeywordsContainSequence},
                     {KeywordsContainSequence, KeywordsContainWord}},
    };
}

constexpr PlaceWorths wholeWordWorths(const PrioritySlots& slots)
{
    return {
        .begin = {noWorth, slots.beginsWithWord},
        .name = {{noWorth, noWorth}, {noWorth, slots.containsWord}},
        .keywords = {{noWorth, noWorth}, {noWorth, KeywordsContainWord}},
    };
}

/// What an exact match and the place of a term are worth for one kind of name.
struct NameWorths
{
    explicit constexpr NameWorths(const PrioritySlots& slots)
        : exact(slots.exact), anyMatch(placeWorths(slots)), wholeWords(wholeWordWorths(slots))
    {}

    Worth exact;
    PlaceWorths anyMatch;
    PlaceWorths wholeWords;
};

inline constexpr NameWorths folderWorths(folderSlots);
inline constexpr NameWorths itemWorths(itemSlots);

/// Any place is as good as any other.
inline constexpr PlaceWorths anywhere = {.begin = {1, 1}, .name = {{1, 1}, {1, 1}}, .keywords = {{1, 1}, {1, 1}}};

}  // namespace Library::Search::detail
