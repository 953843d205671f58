#define PCRE2_CODE_UNIT_WIDTH 8
#include "RatingPeers.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/LibraryResultCategorizer.h>

#include <boost/regex.hpp>

#include <hs/hs.h>
#include <pcre2.h>
#include <re2/re2.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string_view>

using Library::Search::Info;
using Library::Search::ORGroup;

namespace bench {
namespace {

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

/// Lower case in memory that is used again.
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

constexpr SearchPriority folderSlots[] = {
    FolderExactName,          FolderBeginsWithWord,         FolderContainsWord,
    FolderBeginsWithSequence, FolderWordBeginsWithSequence, FolderContainsSequence};
constexpr SearchPriority itemSlots[] = {ItemExactName,          ItemBeginsWithWord,         ItemContainsWord,
                                        ItemBeginsWithSequence, ItemWordBeginsWithSequence, ItemContainsSequence};
constexpr SearchPriority keywordSlots[] = {Invalid, Invalid, KeywordsContainWord,
                                           Invalid, Invalid, KeywordsContainSequence};

/// A rating with the five patterns per term, in the order of the definition: tests stop at the first
/// hit, an excluded or exactly matched group skips its terms.
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

/// All terms of the search in one database of literals. Each text is scanned by itself, or (which is
/// not the obvious way to use it) both at once, with a byte between them that no term holds.
template <bool atOnce>
class Hyperscan : public Rater
{
public:
    explicit Hyperscan(const Info& info)
    {
        for (const ORGroup& group : info.parseTree.groups) {
            Group compiled{exactTextOf(group), {}, {}};
            for (const std::u32string& term : group.terms)
                compiled.required.push_back(indexOf(lowered(term)));
            for (const std::u32string& term : group.excludedTerms)
                compiled.excluded.push_back(indexOf(lowered(term)));
            groups_.push_back(std::move(compiled));
        }
        best_.resize(terms_.size());
        compile();
    }
    ~Hyperscan() override
    {
        hs_free_scratch(scratch_);
        hs_free_database(database_);
    }
    Hyperscan(const Hyperscan&) = delete;
    Hyperscan& operator=(const Hyperscan&) = delete;

    SearchPriority item(const std::string& name, const std::string& keywords) override
    {
        return rate(itemSlots, name, &keywords);
    }
    SearchPriority folder(const std::string& name) override { return rate(folderSlots, name, nullptr); }

private:
    struct Group
    {
        std::string exactText;
        std::vector<unsigned> required;
        std::vector<unsigned> excluded;
    };

    unsigned indexOf(const std::string& term)
    {
        const auto [place, isNew] = indexes_.try_emplace(term, static_cast<unsigned>(terms_.size()));
        if (isNew)
            terms_.push_back(term);
        return place->second;
    }

    void compile()
    {
        std::vector<const char*> texts;
        std::vector<std::size_t> sizes;
        std::vector<unsigned> ids;
        for (const std::string& term : terms_) {
            texts.push_back(term.data());
            sizes.push_back(term.size());
            ids.push_back(static_cast<unsigned>(ids.size()));
        }
        const std::vector<unsigned> flags(terms_.size(), 0);
        hs_compile_error_t* error = nullptr;
        if (hs_compile_lit_multi(texts.data(), flags.data(), ids.data(), sizes.data(),
                                 static_cast<unsigned>(terms_.size()), HS_MODE_BLOCK, nullptr, &database_,
                                 &error) != HS_SUCCESS ||
            hs_alloc_scratch(database_, &scratch_) != HS_SUCCESS)
            throw std::runtime_error("Hyperscan refuses a search");
    }

    SearchPriority rate(const SearchPriority (&slots)[6], std::string_view name, const std::string* keywords)
    {
        const std::size_t room = StringUtils::lowerUtf8Room(name.size()) + 2 +
                                 (keywords == nullptr ? 0 : StringUtils::lowerUtf8Room(keywords->size()));
        if (buffer_.size() < room)
            buffer_.resize(room);
        nameEnd_ = StringUtils::toLowerUtf8Into(buffer_.data(), name);
        size_ = nameEnd_;
        if (keywords != nullptr) {
            buffer_[size_++] = '\xFF';
            size_ += StringUtils::toLowerUtf8Into(buffer_.data() + size_, *keywords);
        }
        slots_ = slots;
        std::fill(best_.begin(), best_.end(), Invalid);
        if (atOnce || keywords == nullptr) {
            scan(0, size_);
        } else {
            scan(0, nameEnd_);
            scan(nameEnd_ + 1, size_);
        }
        return result();
    }

    void scan(std::size_t begin, std::size_t end)
    {
        scanned_ = begin;
        hs_scan(database_, buffer_.data() + begin, static_cast<unsigned>(end - begin), 0, scratch_, found, this);
    }

    static int found(unsigned term, unsigned long long, unsigned long long end, unsigned, void* self)
    {
        auto& scan = *static_cast<Hyperscan*>(self);
        scan.add(term, scan.scanned_ + static_cast<std::size_t>(end));
        return 0;
    }

    void add(unsigned term, std::size_t end)
    {
        const std::size_t begin = end - terms_[term].size();
        const SearchPriority priority = priorityAt(begin, end);
        if (SearchPriorityUtils::higher(best_[term], priority) == best_[term])
            return;
        const bool inName = end <= nameEnd_;
        const char* const text = buffer_.data();
        const auto hasBreak = [&](std::size_t from, std::size_t to) {
            return std::any_of(text + from, text + to, [](char byte) { return byte == '\n' || byte == '\r'; });
        };
        if (!hasBreak(inName ? 0 : nameEnd_ + 1, begin) && !hasBreak(end, inName ? nameEnd_ : size_))
            best_[term] = priority;
    }

    SearchPriority priorityAt(std::size_t begin, std::size_t end) const
    {
        const bool left = border(begin);
        const bool right = border(end);
        if (end > nameEnd_)
            return left && right ? KeywordsContainWord : KeywordsContainSequence;
        if (begin == 0)
            return right ? slots_[1] : slots_[3];
        return left ? (right ? slots_[2] : slots_[4]) : slots_[5];
    }

    bool border(std::size_t at) const
    {
        return (at > 0 && isWord(buffer_[at - 1])) != (at < size_ && isWord(buffer_[at]));
    }

    static bool isWord(char byte)
    {
        return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '_';
    }

    SearchPriority result() const
    {
        const std::string_view name(buffer_.data(), nameEnd_);
        SearchPriority best = Invalid;
        for (const Group& group : groups_) {
            const auto occurs = [&](unsigned term) { return best_[term] != Invalid; };
            if (std::any_of(group.excluded.begin(), group.excluded.end(), occurs))
                continue;
            SearchPriority value = Invalid;
            if (name == group.exactText) {
                value = slots_[0];
            } else if (std::all_of(group.required.begin(), group.required.end(), occurs)) {
                for (const unsigned term : group.required)
                    value = SearchPriorityUtils::higher(value, best_[term]);
            }
            best = SearchPriorityUtils::higher(best, value);
        }
        return best;
    }

    std::vector<Group> groups_;
    std::vector<std::string> terms_;
    std::map<std::string, unsigned> indexes_;
    hs_database_t* database_ = nullptr;
    hs_scratch_t* scratch_ = nullptr;
    std::vector<char> buffer_;
    std::size_t nameEnd_ = 0;
    std::size_t size_ = 0;
    std::size_t scanned_ = 0;
    const SearchPriority* slots_ = nullptr;
    std::vector<SearchPriority> best_;
};

/// Lower-cases and looks for each term in either text, once; decides nothing.
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

template <typename Kind>
Peer peer(const char* name, bool rates = true)
{
    return {name, [](const Info& info) -> std::unique_ptr<Rater> { return std::make_unique<Kind>(info); }, rates};
}

}  // namespace

std::vector<Peer> peers()
{
    return {peer<Own>("own"),
            peer<ByPatterns<StdPattern>>("std::regex"),
            peer<ByPatterns<Pcre2Pattern>>("PCRE2"),
            peer<ByPatterns<Re2Pattern>>("RE2"),
            peer<ByPatterns<BoostPattern>>("Boost.Regex"),
            peer<Hyperscan<false>>("Hyperscan"),
            peer<Hyperscan<true>>("Hyperscan once"),
            peer<Floor>("floor", false)};
}

}  // namespace bench
