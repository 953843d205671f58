#pragma once

#include "host/support/Output.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace VelkHost {

/// One line on the terminal that tells how far an operation has come: a text, a bar and amounts, with a rate
/// where they have a unit. Prints nothing where no person looks.
class ProgressLine
{
public:
    explicit ProgressLine(Output& output) : output_(output) {}
    /// Leaves no line behind.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// What is being done; UTF-8.
    void setText(const std::string& text);
    /// Begins a new bar of `range` steps. Amounts are shown with `unit` when that is not empty.
    void begin(std::uint64_t range, const std::string& unit = {});
    void setValue(std::uint64_t value);
    void step() { setValue(value_ + 1); }

    /// Removes the line, for other output.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    void show(bool always);
    std::string amounts() const;

    Output& output_;
    std::string text_;
    std::string unit_;
    std::uint64_t range_ = 0;
    std::uint64_t value_ = 0;
    std::uint64_t firstValue_ = 0;  ///< where the bar was when it was first moved
    Clock::time_point firstMoved_;
    Clock::time_point shown_;
    bool visible_ = false;
};

}  // namespace VelkHost
