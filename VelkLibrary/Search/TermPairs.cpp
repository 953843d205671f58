#include <VelkLibrary/Search/detail/TermPairs.h>

namespace Library::Search::detail {

TermPairs::TermPairs(const CompiledSearch& search)
{
    for (std::size_t i = 0; i < search.terms.size(); ++i) {
        const LiteralMatcher& term = search.terms[i];
        if (term.term().size() < 2) {
            short_ |= Terms{1} << i;
            continue;
        }
        terms_[term.pair(0)] |= std::uint64_t{1} << i;
        terms_[term.pair(1)] |= std::uint64_t{1} << (mostTerms + i);
    }
    required_.reserve(search.groups.size());
    for (const CompiledSearch::Group& group : search.groups) {
        Terms& required = required_.emplace_back(0);
        for (const std::uint32_t term : search.required(group))
            required |= Terms{1} << term;
    }
}

TermPairs::Terms TermPairs::termsIn(const LoweredTexts& texts) const noexcept
{
    const char* const bytes = texts.bytes();
    std::uint64_t held = 0;
    for (std::size_t i = 1; i < texts.size(); ++i)
        held |= terms_[BytePairs::number(bytes[i - 1], bytes[i])];
    return static_cast<Terms>(held & held >> mostTerms) | short_;
}

}  // namespace Library::Search::detail
