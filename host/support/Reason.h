#pragma once

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

    /// With the placeholders when it has parts.
    const std::string& text() const noexcept { return text_; }
    const std::vector<Reason>& parts() const noexcept { return parts_; }

    /// The whole text. Without parts a "%" stands for itself.
    std::string english() const;

private:
    std::string text_;
    std::vector<Reason> parts_;
};

}  // namespace VelkHost
