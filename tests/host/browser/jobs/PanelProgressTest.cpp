#include "host/browser/jobs/PanelProgress.h"

#include "support/EventLoop.h"
#include "support/TestHost.h"

#include <VelkLibrary/UI/LibraryProgressPanel.h>
#include <VelkLibrary/UI/ProgressGauge.h>

#include <memory>
#include <optional>
#include <stop_token>

using VelkHost::PanelProgress;

namespace {

class PanelProgressTest : public test::TestHost
{
protected:
    /// A new operation on the panel.
    PanelProgress& begin()
    {
        progress_.emplace(static_cast<const LibraryProgressBase&>(*panel_), stop_.get_token());
        deliver();
        return *progress_;
    }

    /// What a progress sends comes to the panel, and from there to the gauge.
    static void deliver()
    {
        constexpr int turns = 3;
        for (int turn = 0; turn < turns; ++turn)
            test::deliverEvents();
    }

    ProgressGauge& gauge() { return *panel_->findChild<ProgressGauge*>(); }

    const std::unique_ptr<LibraryProgressPanel> panel_{LibraryProgressPanel::create(nullptr)};
    std::stop_source stop_;
    std::optional<PanelProgress> progress_;
};

// The panel stands as the operation before has left it: busy, or at its end.
TEST_F(PanelProgressTest, BeginsAnewWhateverWasBefore)
{
    begin().showBusy("Checking");
    deliver();
    ASSERT_EQ(gauge().maximum(), 0);
    begin();
    EXPECT_EQ(gauge().maximum(), 100);
    gauge().onSetValue(70);
    begin();
    EXPECT_EQ(gauge().value(), 0);
    EXPECT_EQ(gauge().maximum(), 100);
}

TEST_F(PanelProgressTest, ShowsHowFarTheOperationIs)
{
    PanelProgress& progress = begin();
    progress.openSubRange(10, 100);
    for (int step = 0; step < 3; ++step)
        progress.increment(U"a.png", U"");
    deliver();
    EXPECT_EQ(gauge().value(), 30);
}

TEST_F(PanelProgressTest, IsCancelledByTheWindow)
{
    const PanelProgress& progress = begin();
    EXPECT_FALSE(progress.isCancelled());
    stop_.request_stop();
    EXPECT_TRUE(progress.isCancelled());
}

TEST_F(PanelProgressTest, OutlivesThePanel)
{
    auto* const panel = LibraryProgressPanel::create(nullptr);
    PanelProgress progress(*panel, stop_.get_token());
    delete panel;
    progress.showBusy("Checking");
    progress.openSubRange(1, 100);
    progress.increment(U"", U"");
    deliver();
    EXPECT_EQ(progress.state().position, 100);
}

}  // namespace
