#include "host/support/Reason.h"

#include <utility>

namespace VelkHost {

Reason::Reason(const char* text) : text_(text) {}

Reason::Reason(std::string text) : text_(std::move(text)) {}

Reason::Reason(std::string text, std::vector<Reason> parts) : text_(std::move(text)), parts_(std::move(parts)) {}

Reason Reason::amount(std::uint64_t number)
{
    Reason reason(std::to_string(number));
    reason.number_ = number;
    return reason;
}

std::string Reason::english() const
{
    if (parts_.empty())
        return text_;
    std::string result;
    for (std::size_t i = 0; i < text_.size(); ++i) {
        const std::size_t part = i + 1 < text_.size() ? static_cast<std::size_t>(text_[i + 1] - '1') : parts_.size();
        if (text_[i] == '%' && part < parts_.size()) {
            result += parts_[part].english();
            ++i;
        } else {
            result += text_[i];
        }
    }
    return result;
}

}  // namespace VelkHost
