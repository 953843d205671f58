#include <VelkLibrary/Search/detail/CompiledSearch.h>

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/LowerCase.h>
#include <VelkCommon/Text/StringConvert.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Library::Search::detail {

namespace {

// Most terms are ASCII, and need no text in between.
std::string lowered(const std::u32string& text)
{
    std::string result(text.size(), '\0');
    char32_t bits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bits |= text[i];
        result[i] = Velk::Ascii::lower(static_cast<char>(text[i]));
    }
    return bits < 0x80 ? result : StringConvert::toStdUtf8String(StringUtils::toLower(text));
}

}  // namespace

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
        search_.terms.reserve(std::min(count, fewTerms));
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
    /// So many are compared one after the other in less time than an order of them takes.
    static constexpr std::size_t fewTerms = 16;

    std::uint32_t listSize() const { return static_cast<std::uint32_t>(search_.groupTerms.size()); }

    void addTerms(const std::vector<std::u32string>& texts)
    {
        for (const std::u32string& text : texts)
            search_.groupTerms.push_back(indexOf(lowered(text)));
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
        const std::vector<LiteralMatcher>& known = search_.terms;
        const auto index = static_cast<std::uint32_t>(known.size());
        if (known.size() < fewTerms) {
            const auto isSame = [&](const LiteralMatcher& other) { return other.term() == term; };
            const auto place = std::find_if(known.begin(), known.end(), isSame);
            if (place != known.end())
                return static_cast<std::uint32_t>(place - known.begin());
        } else {
            orderByText();
            const auto isBefore = [&](std::uint32_t a, const std::string& b) { return known[a].term() < b; };
            const auto place = std::lower_bound(byText_.begin(), byText_.end(), term, isBefore);
            if (place != byText_.end() && known[*place].term() == term)
                return *place;
            byText_.insert(place, index);
        }
        search_.terms.emplace_back(std::move(term));
        return index;
    }

    void orderByText()
    {
        if (!byText_.empty())
            return;
        byText_.resize(search_.terms.size());
        std::iota(byText_.begin(), byText_.end(), 0U);
        std::sort(byText_.begin(), byText_.end(),
                  [this](auto a, auto b) { return search_.terms[a].term() < search_.terms[b].term(); });
    }

    CompiledSearch& search_;
    std::vector<std::uint32_t> byText_;  // indexes of the terms in the order of their texts, once there are many
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
