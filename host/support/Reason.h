#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace VelkHost {

/// Why something failed, kept so that a window can tell it in its user's language: an English text in which
/// %1 to %9 stand for its parts, which may be reasons themselves. UTF-8.
class Reason
{
public:
    Reason(const char* text);  // NOLINT(google-explicit-constructor): a reason is mostly a literal
    Reason(std::string text);  // NOLINT(google-explicit-constructor): and sometimes a text from elsewhere
    Reason(std::string text, std::vector<Reason> parts);
    /// An amount, which languages write differently.
    static Reason amount(std::uint64_t number);

    /// The text; its placeholders stand in it when there are parts.
    const std::string& text() const noexcept { return text_; }
    const std::vector<Reason>& parts() const noexcept { return parts_; }
    /// The number of an amount; empty for a text.
    const std::optional<std::uint64_t>& number() const noexcept { return number_; }

    /// The whole text. Without parts a "%" stands for itself.
    std::string english() const;

private:
    std::string text_;
    std::vector<Reason> parts_;
    std::optional<std::uint64_t> number_;
};

}  // namespace VelkHost
