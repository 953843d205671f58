#pragma once

#include "RatingPeers.h"

#include <VelkCommon/Text/StringUtils.h>

#include <string_view>

/// @file
/// The parts that all ways to rate have in common.

namespace bench {

/// A term in the form in which it is looked for in texts.
std::string lowered(const std::u32string& term);
/// The name that the terms of a group make together.
std::string exactTextOf(const Library::Search::ORGroup& group);

/// Lower-cases texts, in memory that is used again.
class Lowering
{
public:
    std::string_view operator()(std::string_view text)
    {
        if (buffer_.size() < StringUtils::lowerUtf8Room(text.size()))
            buffer_.resize(StringUtils::lowerUtf8Room(text.size()));
        return {buffer_.data(), StringUtils::toLowerUtf8Into(buffer_.data(), text)};
    }

private:
    std::vector<char> buffer_;
};

/// The priorities of an exact text and of the five ways in which a term can occur in one; Invalid for a way that does
/// not count.
inline constexpr SearchPriority folderSlots[] = {
    FolderExactName,          FolderBeginsWithWord,         FolderContainsWord,
    FolderBeginsWithSequence, FolderWordBeginsWithSequence, FolderContainsSequence};
inline constexpr SearchPriority itemSlots[] = {
    ItemExactName,          ItemBeginsWithWord,         ItemContainsWord,
    ItemBeginsWithSequence, ItemWordBeginsWithSequence, ItemContainsSequence};
inline constexpr SearchPriority keywordSlots[] = {Invalid, Invalid, KeywordsContainWord,
                                                  Invalid, Invalid, KeywordsContainSequence};

template <typename Kind>
Peer peer(const char* name, bool rates = true)
{
    return {name,
            [](const Library::Search::Info& info) -> std::unique_ptr<Rater> { return std::make_unique<Kind>(info); },
            rates};
}

std::vector<Peer> patternPeers();
std::vector<Peer> hyperscanPeers();

}  // namespace bench
