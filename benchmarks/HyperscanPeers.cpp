#include "RaterParts.h"

#include <hs/hs.h>

#include <algorithm>
#include <map>
#include <stdexcept>

using Library::Search::Info;
using Library::Search::ORGroup;

namespace bench {
namespace {

/// All terms of the search in one database of literals. Each text is scanned by itself, or, in a less obvious way
/// to use it, both are scanned at once, with a byte between them that no term holds.
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

}  // namespace

std::vector<Peer> hyperscanPeers()
{
    return {peer<Hyperscan<false>>("Hyperscan"), peer<Hyperscan<true>>("Hyperscan once")};
}

}  // namespace bench
