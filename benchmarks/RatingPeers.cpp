#include "RatingPeers.h"

#include "RaterParts.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include <algorithm>
#include <cstring>

using Library::Search::Info;
using Library::Search::ORGroup;

namespace bench {
namespace {

class Own : public Rater
{
public:
    explicit Own(const Info& info) : categorizer_(info) {}
    SearchPriority item(const std::string& name, const std::string& keywords) override
    {
        return categorizer_.categorizeItemResult(name, keywords);
    }
    SearchPriority folder(const std::string& name) override { return categorizer_.categorizeFolderResult(name); }

private:
    LibraryResultCategorizer categorizer_;
};

/// Lower-cases, and looks for each term once in each text, but decides nothing.
class Floor : public Rater
{
public:
    explicit Floor(const Info& info)
    {
        for (const ORGroup& group : info.parseTree.groups) {
            for (const auto* terms : {&group.terms, &group.excludedTerms}) {
                for (const std::u32string& term : *terms)
                    add(lowered(term));
            }
        }
    }
    SearchPriority item(const std::string& name, const std::string& keywords) override
    {
        return static_cast<SearchPriority>(count(nameLowering_(name)) + count(keywordLowering_(keywords)));
    }
    SearchPriority folder(const std::string& name) override
    {
        return static_cast<SearchPriority>(count(nameLowering_(name)));
    }

private:
    void add(const std::string& term)
    {
        if (std::find(terms_.begin(), terms_.end(), term) == terms_.end())
            terms_.push_back(term);
    }

    int count(std::string_view text) const
    {
        int found = 0;
        for (const std::string& term : terms_)
            found += memmem(text.data(), text.size(), term.data(), term.size()) != nullptr ? 1 : 0;
        return found;
    }

    std::vector<std::string> terms_;
    Lowering nameLowering_;
    Lowering keywordLowering_;
};

}  // namespace

std::string lowered(const std::u32string& term)
{
    return StringConvert::toStdUtf8String(StringUtils::toLower(term));
}

std::string exactTextOf(const ORGroup& group)
{
    std::u32string joined;
    for (std::size_t i = 0; i < group.terms.size(); ++i)
        joined.append(i == 0 ? U"" : U" ").append(group.terms[i]);
    return lowered(joined);
}

std::vector<Peer> peers()
{
    std::vector<Peer> all = {peer<Own>("own")};
    for (const std::vector<Peer>& more : {patternPeers(), hyperscanPeers()})
        all.insert(all.end(), more.begin(), more.end());
    all.push_back(peer<Floor>("floor", false));
    return all;
}

}  // namespace bench
