#pragma once

#include <VelkCommon/Reporting/ProgressSubject.h>
#include <VelkLibrary/LibraryProgressBase.h>

#include <chrono>
#include <stop_token>
#include <string>

namespace VelkHost {

/// The progress of an operation on a worker as a panel shows it, and the way to cancel the operation. Only one
/// thread reports.
class PanelProgress : public ProgressSubject, private ProgressSubject::Observer
{
public:
    /// `panel` may be destroyed before this object.
    PanelProgress(const LibraryProgressBase& panel, std::stop_token stop);
    ~PanelProgress() override;

    /// Begins a part of the operation that does not tell how far it is. UTF-8.
    void showBusy(const std::string& text);

    bool isCancelled() const override;

private:
    void progressChanged(const State& state) override;

    const LibraryProgressBase panel_;
    const std::stop_token stop_;
    int shownPosition_ = -1;
    std::chrono::steady_clock::time_point shownAt_;
};

}  // namespace VelkHost
