#pragma once

#include <VelkCommon/Export.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A Boolean expression of search terms, as people type it into a search box.
///
/// Names come first: nothing is a syntax error, and almost every name is found when it is typed exactly as it
/// is written. A blank means AND; OR, AND and NOT are operators in capitals, "|" is OR, "-x" is NOT x;
/// quotes make a phrase; parentheses group. docs/search-syntax.md has the whole grammar.
///
///     office chair            both words
///     chair OR table          either
///     chair -"dark red"       chair, without the phrase
///     (desk OR table) oak     either of the two, with oak
///     chair and table         three words: operators are capitals
///
/// One thread at a time; distinct expressions share nothing.
class VELKCOMMON_EXPORT BooleanExp
{
public:
    class Term;
    class Group;

    /// An operand. Owned and deleted through this base.
    class VELKCOMMON_EXPORT Node
    {
    public:
        virtual ~Node() = 0;
        /// This node as a term, or null.
        /// @{
        virtual Term* asTerm();
        virtual const Term* asTerm() const;
        /// @}
        /// This node as a group, or null.
        /// @{
        virtual Group* asGroup();
        virtual const Group* asGroup() const;
        /// @}

        bool negated = false;  ///< stands under a NOT

    protected:
        Node() = default;
        /// Copies `negated`.
        /// @{
        Node(const Node&) = default;
        Node& operator=(const Node&) = default;
        /// @}
    };

    /// A word or phrase.
    class VELKCOMMON_EXPORT Term : public Node
    {
    public:
        Term() = default;
        /// A term with this text, as typed.
        explicit Term(std::u32string termText, bool isNegated = false);
        ~Term() override;
        Term* asTerm() override;
        const Term* asTerm() const override;

        std::u32string text;  ///< as typed
    };

    /// Operands joined by AND and OR; AND binds more tightly.
    class VELKCOMMON_EXPORT Group : public Node
    {
    public:
        /// The operator between two operands.
        enum Conjunction : std::int32_t { And = 0, Or = 1 };

        /// A following operand with the operator before it.
        struct ConjoinedTerm
        {
            std::unique_ptr<Node> expression;  ///< the operand
            Conjunction conjunction = And;     ///< the operator before it
        };

        Group() = default;
        ~Group() override;
        Group* asGroup() override;
        const Group* asGroup() const override;

        /// Calls `f` once for each entry of `conjoinedTerms`, in order; `first` is not visited.
        void forEachConjoinedTerm(const std::function<void(const ConjoinedTerm&)>& f) const;

        std::unique_ptr<Node> first;                ///< the operand with no operator before it
        std::vector<ConjoinedTerm> conjoinedTerms;  ///< those that follow, in order
    };

    /// The operator between two operands.
    using Conjunction = Group::Conjunction;

    std::unique_ptr<Group> root;  ///< the whole expression

    /// The expression that `text` stands for; null when there is nothing to search for. Throws
    /// std::length_error for a text of more than 16,384 code points or with more than 128 open groups.
    static std::unique_ptr<BooleanExp> parse(const std::u32string& text);

    /// Rewrites the expression into an OR of AND-runs: one flat root group, read as `first` followed by
    /// the conjoined terms, in which an Or starts the next alternative and negation stands on terms
    /// only. Alternatives keep their reading order, the left operand varying slowest; nothing is
    /// removed or merged.
    /// Trees built by hand are accepted too: a null operand, or a group without operands, is left out together
    /// with the operator before it, and a node that is neither a term nor a group stays as a leaf.
    /// Throws std::length_error, before building anything, when the result would have more than 16,384
    /// terms in all or 1,048,576 code points in them, or when groups are nested more than 512 deep. Throws
    /// std::invalid_argument when the result needs two copies of a leaf that is not a term. After any exception
    /// the expression is unchanged.
    void convertToDisjunctiveNormalForm();
};
