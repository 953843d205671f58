// The engines for regular expressions.
#define PCRE2_CODE_UNIT_WIDTH 8
#include "RaterParts.h"

#include <boost/regex.hpp>

#include <pcre2.h>
#include <re2/re2.h>

#include <optional>
#include <regex>
#include <stdexcept>

using Library::Search::Info;
using Library::Search::ORGroup;

namespace bench {
namespace {

std::string escaped(const std::string& term)
{
    std::string result;
    for (const char byte : term) {
        if (std::string_view(".^$|()[]{}*+?\\").find(byte) != std::string_view::npos)
            result += '\\';
        result += byte;
    }
    return result;
}

class StdPattern
{
public:
    static constexpr const char* any = ".*";
    explicit StdPattern(const std::string& pattern) : regex_(pattern) {}
    bool operator()(std::string_view text) const { return std::regex_match(text.begin(), text.end(), regex_); }

private:
    std::regex regex_;
};

class BoostPattern
{
public:
    static constexpr const char* any = "[^\\n\\r]*";
    explicit BoostPattern(const std::string& pattern) : regex_(pattern) {}
    bool operator()(std::string_view text) const { return boost::regex_match(text.begin(), text.end(), regex_); }

private:
    boost::regex regex_;
};

class Re2Pattern
{
public:
    static constexpr const char* any = "[^\\n\\r]*";
    explicit Re2Pattern(const std::string& pattern) : regex_(std::make_unique<RE2>(pattern, RE2::Latin1)) {}
    bool operator()(std::string_view text) const
    {
        return RE2::FullMatch(re2::StringPiece(text.data(), text.size()), *regex_);
    }

private:
    std::unique_ptr<RE2> regex_;
};

class Pcre2Pattern
{
public:
    static constexpr const char* any = ".*";
    explicit Pcre2Pattern(const std::string& pattern)
    {
        int error = 0;
        std::size_t place = 0;
        const std::unique_ptr<pcre2_compile_context, decltype(&pcre2_compile_context_free)> context(
            pcre2_compile_context_create(nullptr), pcre2_compile_context_free);
        pcre2_set_newline(context.get(), PCRE2_NEWLINE_ANYCRLF);
        code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                  PCRE2_ANCHORED | PCRE2_ENDANCHORED, &error, &place, context.get()));
        if (!code_ || pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE) != 0)
            throw std::runtime_error("PCRE2 refuses " + pattern);
        match_.reset(pcre2_match_data_create(1, nullptr));
    }
    bool operator()(std::string_view text) const
    {
        return pcre2_jit_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0, match_.get(),
                               nullptr) >= 0;
    }

private:
    struct Free
    {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
        void operator()(pcre2_match_data* match) const { pcre2_match_data_free(match); }
    };
    std::unique_ptr<pcre2_code, Free> code_;
    std::unique_ptr<pcre2_match_data, Free> match_;
};

/// A rating with five patterns per term, tried in the order of the definition: the first pattern that matches ends the
/// tests of a term, and a group that is excluded or matches exactly skips its terms.
template <typename Pattern>
class ByPatterns : public Rater
{
public:
    explicit ByPatterns(const Info& info)
    {
        for (const ORGroup& group : info.parseTree.groups)
            groups_.emplace_back(group);
    }

    SearchPriority item(const std::string& name, const std::string& keywords) override
    {
        reset();
        add(lowering_(name), itemSlots);
        add(lowering_(keywords), keywordSlots);
        return result();
    }

    SearchPriority folder(const std::string& name) override
    {
        reset();
        add(lowering_(name), folderSlots);
        return result();
    }

private:
    struct Term
    {
        explicit Term(const std::string& term)
            : patterns{Pattern(escaped(term) + "\\b" + any), Pattern(any + "\\b" + escaped(term) + "\\b" + any),
                       Pattern(escaped(term) + any), Pattern(any + "\\b" + escaped(term) + any),
                       Pattern(any + escaped(term) + any)}
        {}
        static inline const std::string any = Pattern::any;
        Pattern patterns[5];
        SearchPriority priority = Invalid;
    };

    struct Group
    {
        explicit Group(const ORGroup& group) : exactText(exactTextOf(group))
        {
            for (const std::u32string& term : group.terms)
                terms.emplace_back(lowered(term));
            std::string alternatives;
            for (const std::u32string& term : group.excludedTerms)
                alternatives.append(alternatives.empty() ? "" : "|").append(escaped(lowered(term)));
            if (!group.excludedTerms.empty())
                exclusion.emplace(std::string(Pattern::any) + "(?:" + alternatives + ")" + Pattern::any);
        }
        std::string exactText;
        std::vector<Term> terms;
        std::optional<Pattern> exclusion;
        SearchPriority exact = Invalid;
        bool excluded = false;
    };

    void reset()
    {
        for (Group& group : groups_) {
            group.exact = Invalid;
            group.excluded = false;
            for (Term& term : group.terms)
                term.priority = Invalid;
        }
    }

    void add(std::string_view text, const SearchPriority (&slots)[6])
    {
        for (Group& group : groups_) {
            if (group.excluded)
                continue;
            if (group.exclusion && (*group.exclusion)(text)) {
                group.excluded = true;
            } else if (slots[0] != Invalid && text == group.exactText) {
                group.exact = slots[0];
            } else {
                for (Term& term : group.terms)
                    term.priority = SearchPriorityUtils::higher(term.priority, find(term, text, slots));
            }
        }
    }

    static SearchPriority find(const Term& term, std::string_view text, const SearchPriority (&slots)[6])
    {
        for (std::size_t i = 0; i < 5; ++i) {
            if (slots[i + 1] != Invalid && term.patterns[i](text))
                return slots[i + 1];
        }
        return Invalid;
    }

    SearchPriority result() const
    {
        SearchPriority best = Invalid;
        for (const Group& group : groups_) {
            if (!group.excluded)
                best = SearchPriorityUtils::higher(best, group.exact != Invalid ? group.exact : bestTerm(group));
        }
        return best;
    }

    static SearchPriority bestTerm(const Group& group)
    {
        SearchPriority best = Invalid;
        for (const Term& term : group.terms) {
            if (term.priority == Invalid)
                return Invalid;
            best = SearchPriorityUtils::higher(best, term.priority);
        }
        return best;
    }

    std::vector<Group> groups_;
    Lowering lowering_;
};

}  // namespace

std::vector<Peer> patternPeers()
{
    return {peer<ByPatterns<StdPattern>>("std::regex"), peer<ByPatterns<Pcre2Pattern>>("PCRE2"),
            peer<ByPatterns<Re2Pattern>>("RE2"), peer<ByPatterns<BoostPattern>>("Boost.Regex")};
}

}  // namespace bench
