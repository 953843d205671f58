#include "host/browser/jobs/PanelProgress.h"

#include <VelkCommon/Text/StringConvert.h>

#include <utility>

namespace VelkHost {
namespace {

constexpr int wholeRange = 100;
constexpr std::chrono::milliseconds betweenTexts{50};  // an archive of 100,000 entries would flood the panel

}  // namespace

PanelProgress::PanelProgress(const LibraryProgressBase& panel, std::stop_token stop)
    : panel_(panel), stop_(std::move(stop))
{
    panel_.sendRange(wholeRange);
    panel_.sendValue(0);
    setObserver(this);
}

PanelProgress::~PanelProgress()
{
    setObserver(nullptr);
}

void PanelProgress::showBusy(const std::string& text)
{
    panel_.sendText(text);
    panel_.sendRange(0);
}

bool PanelProgress::isCancelled() const
{
    return stop_.stop_requested() || ProgressSubject::isCancelled();
}

void PanelProgress::progressChanged(const State& state)
{
    const auto now = std::chrono::steady_clock::now();
    const int position = static_cast<int>(state.position);
    if (position == shownPosition_ && now - shownAt_ < betweenTexts)
        return;
    panel_.sendText(StringConvert::toStdUtf8String(state.mainLabel));
    panel_.sendValue(static_cast<std::size_t>(position));
    shownPosition_ = position;
    shownAt_ = now;
}

}  // namespace VelkHost
