#pragma once

#include "host/support/ProgressLine.h"

#include <VelkCommon/Reporting/ProgressSubject.h>

namespace VelkHost {

/// Thrown when Ctrl-C ends an operation.
struct Interrupted
{};

/// The progress of an operation as a line on the terminal, which Ctrl-C cancels.
class ShownProgress : public ProgressSubject, private ProgressSubject::Observer
{
public:
    /// How Ctrl-C reaches the operation: as the answer of isCancelled(), or, for one that never asks, as
    /// an Interrupted thrown at its next step.
    enum class Cancel { answered, thrown };

    /// Watches for Ctrl-C from now on.
    ShownProgress(Output& output, Cancel cancel);
    ~ShownProgress() override;

    void increment(std::u32string mainLabel, std::u32string secondaryLabel) override;
    bool isCancelled() const override;

private:
    void progressChanged(const State& state) override;

    ProgressLine line_;
    Cancel cancel_;
};

}  // namespace VelkHost
