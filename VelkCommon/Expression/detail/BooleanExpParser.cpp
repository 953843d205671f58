#include <VelkCommon/Expression/detail/BooleanExpParser.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Velk::detail {
namespace {

constexpr std::size_t textLimit = 16'384;    // code points
constexpr std::size_t openGroupLimit = 128;  // nested groups

constexpr bool isBlank(char32_t c) noexcept
{
    return c <= U' ' || c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
           c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

constexpr bool isQuote(char32_t c) noexcept
{
    return c == U'"' || (c >= U'\u201C' && c <= U'\u201E');
}

/// Builds the expression of one text in a single pass. Nothing is an error: an operator that makes no sense where
/// it stands is taken as a word of a name, or left out.
class Parser
{
public:
    explicit Parser(std::u32string_view text) : text_(text)
    {
        open_.reserve(8);
        open_.emplace_back();
    }

    /// The root group; null when the text has no operand.
    std::unique_ptr<BooleanExp::Group> parse();

private:
    /// A group that is being read, and the operators that wait for its next operand.
    struct OpenGroup
    {
        std::unique_ptr<BooleanExp::Group> group = std::make_unique<BooleanExp::Group>();
        BooleanExp::Conjunction conjunction = BooleanExp::Conjunction::And;
        std::size_t nots = 0;
    };

    void readToken();
    void readPhrase();
    void readLoneMark();
    void readWord();
    void openGroup();
    void closeGroup();
    void addAlternativeSign();
    void addWord(std::u32string_view word);
    void addTerm(std::u32string term);
    void addOperand(std::unique_ptr<BooleanExp::Node> operand);

    OpenGroup& current() { return open_.back(); }
    bool insideGroup() const { return open_.size() > 1; }
    bool atEnd(std::size_t position) const { return position >= text_.size(); }
    bool blankOrEnd(std::size_t position) const { return atEnd(position) || isBlank(text_[position]); }
    bool isNotSign(std::size_t position) const;
    bool groupEndsAt(std::size_t position) const;

    std::u32string_view text_;
    std::size_t position_ = 0;
    std::vector<OpenGroup> open_;  // the root first
};

std::unique_ptr<BooleanExp::Group> Parser::parse()
{
    while (!atEnd(position_)) {
        if (isBlank(text_[position_]))
            ++position_;
        else
            readToken();
    }
    while (insideGroup())
        closeGroup();
    return current().group->first ? std::move(current().group) : nullptr;
}

void Parser::readToken()
{
    const char32_t c = text_[position_];
    if (c == U'|') {
        addAlternativeSign();
    } else if (c == U'(') {
        openGroup();
    } else if (c == U')') {
        ++position_;
        if (insideGroup())
            closeGroup();
    } else if (isQuote(c)) {
        if (blankOrEnd(position_ + 1))
            readLoneMark();
        else
            readPhrase();
    } else if (isNotSign(position_)) {
        ++position_;
        ++current().nots;
    } else if (c == U'-') {
        readLoneMark();
    } else {
        readWord();
    }
}

/// Whether "-" stands here and directly before something that it can exclude.
bool Parser::isNotSign(std::size_t position) const
{
    if (text_[position] != U'-' || blankOrEnd(position + 1))
        return false;
    const char32_t next = text_[position + 1];
    return next != U')' && next != U'|';
}

/// Whether only blanks, and closing parentheses that close nothing, stand between `position` and the
/// end of the text or of the current group.
bool Parser::groupEndsAt(std::size_t position) const
{
    while (!atEnd(position) && (isBlank(text_[position]) || (text_[position] == U')' && !insideGroup())))
        ++position;
    return atEnd(position) || text_[position] == U')';
}

void Parser::readPhrase()
{
    std::u32string phrase;
    bool closed = false;
    for (++position_; !closed && !atEnd(position_); ++position_) {
        const bool quote = isQuote(text_[position_]);
        const bool doubled = quote && !atEnd(position_ + 1) && isQuote(text_[position_ + 1]);
        closed = quote && !doubled;
        if (!closed)
            phrase.push_back(text_[position_]);
        if (doubled)
            ++position_;
    }
    while (!closed && !phrase.empty() && isBlank(phrase.back()))
        phrase.pop_back();
    if (phrase.empty())
        current().nots = 0;
    else
        addTerm(std::move(phrase));
}

/// Reads a "-" or quote that stands alone. At the end, the user is still typing, so it is left out; elsewhere it
/// is part of a name.
void Parser::readLoneMark()
{
    const std::size_t mark = position_++;
    if (!groupEndsAt(position_))
        addTerm(std::u32string(1, text_[mark]));
}

void Parser::readWord()
{
    const std::size_t start = position_;
    std::size_t openInWord = 0;
    for (; !blankOrEnd(position_) && text_[position_] != U'|'; ++position_) {
        if (text_[position_] == U'(')
            ++openInWord;
        else if (text_[position_] == U')' && openInWord == 0)
            break;
        else if (text_[position_] == U')')
            --openInWord;
    }
    addWord(text_.substr(start, position_ - start));
}

void Parser::openGroup()
{
    if (open_.size() > openGroupLimit)
        throw std::length_error("search text: too many open groups");
    ++position_;
    open_.emplace_back();
}

void Parser::closeGroup()
{
    std::unique_ptr<BooleanExp::Group> group = std::move(current().group);
    open_.pop_back();
    if (group->first)
        addOperand(std::move(group));
    else
        current().nots = 0;
}

void Parser::addAlternativeSign()
{
    ++position_;
    current().nots = 0;
    current().conjunction = BooleanExp::Conjunction::Or;
}

/// AND and OR join two operands. Where they cannot, at the beginning and after a NOT, they are ordinary words.
void Parser::addWord(std::u32string_view word)
{
    const bool canJoin = current().group->first && current().nots == 0;
    if (word == U"NOT")
        ++current().nots;
    else if (canJoin && word == U"AND")
        current().conjunction = BooleanExp::Conjunction::And;
    else if (canJoin && word == U"OR")
        current().conjunction = BooleanExp::Conjunction::Or;
    else
        addTerm(std::u32string(word));
}

void Parser::addTerm(std::u32string term)
{
    addOperand(std::make_unique<BooleanExp::Term>(std::move(term)));
}

void Parser::addOperand(std::unique_ptr<BooleanExp::Node> operand)
{
    OpenGroup& parent = current();
    operand->negated = parent.nots % 2 != 0;
    if (parent.group->first)
        parent.group->conjoinedTerms.push_back({std::move(operand), parent.conjunction});
    else
        parent.group->first = std::move(operand);
    parent.nots = 0;
    parent.conjunction = BooleanExp::Conjunction::And;
}

}  // namespace

std::unique_ptr<BooleanExp::Group> parseExpression(std::u32string_view text)
{
    if (text.size() > textLimit)
        throw std::length_error("search text: too long");
    return Parser(text).parse();
}

}  // namespace Velk::detail
