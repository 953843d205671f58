#include <VelkLibrary/Search/detail/CompiledSearch.h>

#include <VelkCommon/Text/LowerCase.h>
#include <VelkCommon/Text/StringConvert.h>

#include <algorithm>
#include <utility>

namespace Library::Search::detail {

class CompiledSearch::Builder
{
public:
    Builder(CompiledSearch& search, const std::vector<ORGroup>& groups) : search_(search)
    {
        std::size_t count = 0;
        for (const ORGroup& group : groups)
            count += group.terms.size() + group.excludedTerms.size();
        search_.groups.reserve(groups.size());
        search_.groupTerms.reserve(count);
        search_.terms.reserve(std::min(count, usualTermCount));
        byText_.reserve(std::min(count, usualTermCount));
    }

    void add(const ORGroup& group)
    {
        Group& compiled = search_.groups.emplace_back();
        compiled.requiredBegin = listSize();
        addTerms(group.terms);
        for (std::uint32_t i = compiled.requiredBegin; i < listSize(); ++i) {
            compiled.exactText += i == compiled.requiredBegin ? "" : " ";
            compiled.exactText += search_.terms[search_.groupTerms[i]].term();
        }
        arrange(compiled.requiredBegin);
        compiled.excludedBegin = listSize();
        addTerms(group.excludedTerms);
        arrange(compiled.excludedBegin);
        compiled.end = listSize();
    }

private:
    static constexpr std::size_t usualTermCount = 16;

    std::uint32_t listSize() const { return static_cast<std::uint32_t>(search_.groupTerms.size()); }

    void addTerms(const std::vector<std::u32string>& texts)
    {
        for (const std::u32string& text : texts)
            search_.groupTerms.push_back(indexOf(StringConvert::toStdUtf8String(StringUtils::toLower(text))));
    }

    // Keeps each term once, those that are most likely to be missing first.
    void arrange(std::uint32_t begin)
    {
        std::vector<std::uint32_t>& list = search_.groupTerms;
        const auto rank = [this](std::uint32_t term) { return std::pair(search_.terms[term].frequency(), term); };
        std::sort(list.begin() + begin, list.end(), [&](auto a, auto b) { return rank(a) < rank(b); });
        list.erase(std::unique(list.begin() + begin, list.end()), list.end());
    }

    std::uint32_t indexOf(std::string term)
    {
        const auto isBefore = [this](std::uint32_t a, const std::string& b) { return search_.terms[a].term() < b; };
        const auto place = std::lower_bound(byText_.begin(), byText_.end(), term, isBefore);
        if (place != byText_.end() && search_.terms[*place].term() == term)
            return *place;
        const auto index = static_cast<std::uint32_t>(search_.terms.size());
        byText_.insert(place, index);
        search_.terms.emplace_back(std::move(term));
        return index;
    }

    CompiledSearch& search_;
    std::vector<std::uint32_t> byText_;  // indexes of the terms in the order of their texts
};

CompiledSearch::CompiledSearch(const Info& info) : wordMatchesOnly(info.legacySearch)
{
    Builder builder(*this, info.parseTree.groups);
    for (const ORGroup& group : info.parseTree.groups)
        builder.add(group);
    terms.shrink_to_fit();
    groupTerms.shrink_to_fit();
}

}  // namespace Library::Search::detail
