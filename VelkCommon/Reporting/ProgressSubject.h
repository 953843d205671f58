#pragma once

#include <VelkCommon/Export.h>

#include <cstdint>
#include <memory>
#include <string>

/// Progress of a long operation: two labels and a position from 0 to 100, fed by the code that works
/// and watched by the host. Owned by the caller of the operation, who may ask it to cancel.
///
/// Any thread may call anything; an observer is called on the thread that reports.
class VELKCOMMON_EXPORT ProgressSubject
{
public:
    /// What the watcher sees.
    struct State
    {
        std::u32string mainLabel;       ///< the work as a whole
        std::u32string secondaryLabel;  ///< the piece at hand
        double position = 0;            ///< 0 to 100
        bool cancelled = false;         ///< the user asked to stop
    };

    /// Is told of every change of the labels or the position. Must not throw.
    class VELKCOMMON_EXPORT Observer
    {
    public:
        virtual ~Observer();
        /// `state` is valid during the call.
        virtual void progressChanged(const State& state) = 0;
    };

    ProgressSubject();
    /// `observer` is not owned. It must outlive the subject or be detached by setObserver(nullptr).
    explicit ProgressSubject(Observer& observer);
    virtual ~ProgressSubject();
    ProgressSubject(const ProgressSubject&) = delete;
    ProgressSubject& operator=(const ProgressSubject&) = delete;

    /// Replaces the observer; null detaches it. Waits until running calls to the old observer on other
    /// threads have returned, unless the caller is itself in such a call. So the caller must not hold a
    /// lock that an observer waits for.
    void setObserver(Observer* observer);

    /// Replaces both labels.
    virtual void updateLabels(std::u32string mainLabel, std::u32string secondaryLabel);

    /// Advances by one step of the current sub-range and replaces both labels. Never goes beyond the
    /// end of the sub-range; without a sub-range, only the labels change.
    virtual void increment(std::u32string mainLabel, std::u32string secondaryLabel);

    /// From now on, `steps` increments cover `units` of the hundred, starting at the current position.
    /// Zero steps cover nothing.
    virtual void openSubRange(std::uint64_t steps, double units);

    /// Whether the user asked to stop. The working code checks this between steps.
    virtual bool isCancelled() const;

    /// Asks the working code to stop. This cannot be undone.
    void cancel();

    /// A consistent copy of what the watcher sees.
    State state() const;

private:
    struct Data;
    std::unique_ptr<Data> data_;
};
