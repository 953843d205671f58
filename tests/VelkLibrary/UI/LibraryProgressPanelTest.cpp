#include "VelkLibrary/UI/PanelTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <QBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>

#include <limits>
#include <memory>
#include <utility>

namespace {

class PanelPlacement : public test::PanelTest
{
protected:
    int positionInSplitter() const { return splitter_->indexOf(&panel()); }
};

// ---- Where it is put -----------------------------------------------------------------------------

TEST_F(PanelPlacement, IsTheLastSectionOfTheMainSplitter)
{
    splitter_->addWidget(new QWidget);
    makePanel(test::displayType::barOnly);
    EXPECT_EQ(positionInSplitter(), 2);
    EXPECT_EQ(splitter_->count(), 3);
    EXPECT_FALSE(splitter_->isCollapsible(2));
    EXPECT_TRUE(splitter_->isCollapsible(0));
    EXPECT_EQ(panel().parentWidget(), splitter_);
    EXPECT_FALSE(panel().isWindow());
}

TEST_F(PanelPlacement, FindsTheSplitterAtAnyDepth)
{
    QWidget outer;
    auto* const column = new QVBoxLayout(&outer);
    column->addWidget(new QSplitter);
    column->addWidget(&window_);
    const LibraryProgressPanel* const panel = LibraryProgressPanel::create(&outer);
    EXPECT_EQ(splitter_->indexOf(const_cast<LibraryProgressPanel*>(panel)), 1);
    window_.setParent(nullptr);
}

TEST_F(PanelPlacement, WithoutThatSplitterItIsPutNowhere)
{
    splitter_->setObjectName(QStringLiteral("anotherSplitter"));
    window_.show();
    const LibraryProgressPanel* const panel = LibraryProgressPanel::create(&window_);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(splitter_->count(), 1);
    EXPECT_EQ(panel->parentWidget(), &window_);
    EXPECT_EQ(window_.layout()->count(), 1);
    test::Application::deliverEvents();
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(PanelPlacement, ASplitterThatIsTheParentItselfIsNotLookedAt)
{
    QSplitter splitter;
    splitter.setObjectName(QStringLiteral("libMainSplitter"));
    static_cast<void>(LibraryProgressPanel::create(&splitter));
    // Qt's splitters adopt any child widget, but not a window.
    EXPECT_EQ(splitter.count(), 0);
}

TEST_F(PanelPlacement, WithoutAParentItBelongsToTheCaller)
{
    const std::unique_ptr<LibraryProgressPanel> panel(LibraryProgressPanel::create(nullptr));
    EXPECT_EQ(panel->parent(), nullptr);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(PanelPlacement, GoesWithItsWindow)
{
    auto window = std::make_unique<QWidget>();
    auto* const splitter = new QSplitter(window.get());
    splitter->setObjectName(QStringLiteral("libMainSplitter"));
    const QPointer<LibraryProgressPanel> panel = LibraryProgressPanel::create(window.get());
    EXPECT_EQ(splitter->indexOf(panel), 0);
    window.reset();
    EXPECT_TRUE(panel.isNull());
}

TEST_F(PanelPlacement, AppearsWithItsWindow)
{
    makePanel(test::displayType::barOnly);
    EXPECT_FALSE(panel().isVisible());
    window_.show();
    EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelPlacement, AppearsInAWindowThatIsShown)
{
    window_.show();
    makePanel(test::displayType::barOnly);
    test::Application::deliverEvents();
    EXPECT_TRUE(panel().isVisible());
    EXPECT_EQ(panel().height(), panel().sizeHint().height());
}

TEST_F(PanelPlacement, NoTimerShowsWhatTheHostHides)
{
    makePanel(test::displayType::barOnly);
    panel().hide();
    window_.show();
    panel().onSetRangeInGauge(10);
    panel().onSetValueInGauge(3);
    test::Application::deliverEvents();
    for (const QTimer* const timer : panel().findChildren<QTimer*>())
        EXPECT_FALSE(timer->isActive());
    EXPECT_FALSE(panel().isVisible());
    panel().show();
    EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelPlacement, StaysAtTheEndOfAJob)
{
    makePanel(test::displayType::barOnly);
    window_.show();
    QSignalSpy cancelled(&panel(), &QProgressDialog::canceled);
    panel().onSetRangeInGauge(10);
    panel().onSetValueInGauge(10);
    test::Application::deliverEvents();
    QTest::keyClick(&panel(), Qt::Key_Escape);
    EXPECT_TRUE(panel().isVisible());
    EXPECT_EQ(gauge().value(), 10);
    EXPECT_EQ(cancelled.count(), 0);
}

// ---- How it looks --------------------------------------------------------------------------------

TEST_F(PanelPlacement, IsAStripOfFixedHeight)
{
    makePanel(test::displayType::barOnly);
    EXPECT_EQ(panel().objectName(), QStringLiteral("LibraryProgressPanel"));
    EXPECT_EQ(panel().sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(panel().sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    EXPECT_GT(panel().sizeHint().height(), 0);
    EXPECT_EQ(panel().minimumHeight(), panel().sizeHint().height());
    EXPECT_EQ(panel().maximumHeight(), panel().sizeHint().height());
    EXPECT_EQ(panel().layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(panel().contentsMargins(), QMargins(0, 0, 0, 0));
}

TEST_F(PanelPlacement, HasALabelOnEachSideOfTheBar)
{
    makePanel(test::displayType::barOnly);
    auto* const row = qobject_cast<QBoxLayout*>(panel().layout());
    ASSERT_NE(row, nullptr);
    ASSERT_EQ(row->count(), 3);
    EXPECT_EQ(row->itemAt(0)->alignment(), Qt::AlignLeft);
    EXPECT_EQ(row->stretch(0), 0);
    EXPECT_EQ(row->itemAt(1)->widget(), &gauge());
    EXPECT_EQ(row->itemAt(2)->alignment(), Qt::AlignRight);
    EXPECT_EQ(row->stretch(2), 0);
    EXPECT_EQ(labelText(), "");
    EXPECT_EQ(rangeText(), "");
    EXPECT_EQ(panel().findChildren<QLabel*>().size(), 3) << "two beside the bar and the dialog's own";
    EXPECT_EQ(panel().findChildren<QProgressBar*>().size(), 1);
}

TEST_F(PanelPlacement, HasNoButton)
{
    makePanel(test::displayType::barOnly);
    EXPECT_TRUE(panel().findChildren<QPushButton*>().isEmpty());
}

class PanelLayout : public test::PanelTest
{
protected:
    void expectThreeColumns() const
    {
        EXPECT_GT(gauge().width(), panel().width() / 5);
        EXPECT_LT(sideLabel(0).geometry().right(), gauge().geometry().left());
        EXPECT_LT(gauge().geometry().right(), sideLabel(2).geometry().left());
        EXPECT_TRUE(panel().rect().contains(gauge().geometry()));
        EXPECT_TRUE(panel().rect().contains(sideLabel(0).geometry()));
        EXPECT_TRUE(panel().rect().contains(sideLabel(2).geometry()));
        EXPECT_GE(sideLabel(2).width(), sideLabel(2).sizeHint().width()) << "how much is done is cut off";
    }
};

TEST_F(PanelLayout, KeepsItsColumnsThroughSizesAndStyles)
{
    makePanel(test::displayType::amounts);
    window_.show();
    panel().onSetText("Checking plants.calib");
    panel().onSetRangeInGauge(1000);
    panel().onSetValueInGauge(500);
    test::Application::deliverEvents();
    expectThreeColumns();
    window_.resize(800, 500);
    test::Application::deliverEvents();
    expectThreeColumns();
    const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("Windows")));
    ASSERT_NE(style, nullptr);
    panel().setStyle(style.get());
    test::Application::deliverEvents();
    expectThreeColumns();
    panel().setStyle(nullptr);
}

TEST_F(PanelLayout, ALongTextIsCutOffAndDoesNotWidenTheWindow)
{
    makePanel(test::displayType::amounts);
    window_.resize(400, 300);
    window_.show();
    panel().onSetText(std::string(1000, 'x'));
    panel().onSetRangeInGauge(1000);
    test::Application::deliverEvents();
    EXPECT_LT(window_.minimumSizeHint().width(), 400);
    EXPECT_EQ(window_.width(), 400);
    expectThreeColumns();
}

// ---- What it passes on ---------------------------------------------------------------------------

class PanelForwarding : public test::PanelTest
{
protected:
    int textCalls() { return std::exchange(textCalls_, 0); }

    void makeCounted(int displayType)
    {
        makePanel(displayType);
        QObject::connect(&text(), &ProgressText::setLabelText, &window_, [this] { ++textCalls_; });
    }

private:
    int textCalls_ = 0;
};

TEST_F(PanelForwarding, NothingHappensBeforeTheEventLoop)
{
    makeCounted(test::displayType::amounts);
    panel().onSetRangeInGauge(200);
    panel().onSetValueInGauge(50);
    panel().onUpdateInGauge();
    panel().onSetText("Copying");
    EXPECT_EQ(gauge().maximum(), 100);
    EXPECT_EQ(gauge().value(), 0);
    EXPECT_EQ(labelText(), "");
    EXPECT_EQ(textCalls(), 0);
    test::Application::deliverEvents();
    EXPECT_EQ(gauge().maximum(), 200);
    EXPECT_EQ(gauge().value(), 51);
    EXPECT_EQ(labelText(), "Copying");
    EXPECT_EQ(rangeText(), "51 of 200");
}

TEST_F(PanelForwarding, ValuesAndRangesReachTheTextTwice)
{
    makeCounted(test::displayType::amounts);
    panel().onSetValueInGauge(50);
    test::Application::deliverEvents();
    EXPECT_EQ(textCalls(), 2);
    panel().onSetRangeInGauge(200);
    test::Application::deliverEvents();
    EXPECT_EQ(textCalls(), 2);
    panel().onSetText("Copying");
    test::Application::deliverEvents();
    EXPECT_EQ(textCalls(), 1);
    EXPECT_EQ(rangeText(), "50 of 200");
}

TEST_F(PanelForwarding, UnitsAreStoredAtOnceAndShownWithTheNextChange)
{
    makeCounted(test::displayType::amounts);
    panel().onSetRangeInGauge(200);
    test::Application::deliverEvents();
    static_cast<void>(textCalls());
    panel().onSetUnits("KB");
    test::Application::deliverEvents();
    EXPECT_EQ(textCalls(), 0);
    EXPECT_EQ(rangeText(), "0 of 200");
    panel().onSetValueInGauge(1);
    panel().onSetUnits("MB");
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "1 of 200 MB") << "the units are those of the moment when the text is made";
}

TEST_F(PanelForwarding, SetsTheLabelsAtOnceWhenAskedTo)
{
    makePanel(test::displayType::barOnly);
    panel().setProgressLabelText(QStringLiteral("left"));
    panel().setProgressRangeText(QStringLiteral("right"));
    EXPECT_EQ(labelText(), "left");
    EXPECT_EQ(rangeText(), "right");
}

struct SizeCase
{
    const char* name;
    std::uint64_t size;
    const char* text;
};

class PanelSizes : public test::PanelTest, public testing::WithParamInterface<SizeCase>
{};

TEST_P(PanelSizes, AreCutOffTo32Bits)
{
    makePanel(test::displayType::amounts);
    panel().onSetRangeInGauge(static_cast<size_t>(GetParam().size));
    panel().onSetValueInGauge(static_cast<size_t>(GetParam().size));
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), std::string(GetParam().text) + " of " + GetParam().text);
}

const SizeCase sizes[] = {
    {"Zero", 0, "0"},
    {"One", 1, "1"},
    {"OneAnd33Bits", 4294967297, "1"},
    {"LargestInt", 2147483647, "2,147,483,647"},
    {"BeyondInt", 2147483648, "-2,147,483,648"},
    {"Largest", std::numeric_limits<std::uint64_t>::max(), "-1"},
};
INSTANTIATE_TEST_SUITE_P(Rows, PanelSizes, testing::ValuesIn(sizes), [](const auto& row) { return row.param.name; });

TEST_F(PanelForwarding, ASizeMovesTheBarAsItsLowestBitsDo)
{
    makePanel(test::displayType::barOnly);
    panel().onSetValueInGauge(static_cast<size_t>(4294967297));
    test::Application::deliverEvents();
    EXPECT_EQ(gauge().value(), 1);
}

TEST_F(PanelForwarding, IsCalledByNameToo)
{
    makePanel(test::displayType::amounts);
    call(panel(), "onSetRangeInGauge", Q_ARG(size_t, 200));
    call(panel(), "onSetValueInGauge", Q_ARG(int, 50));
    call(panel(), "onUpdateInGauge");
    call(panel(), "onSetUnits", Q_ARG(std::string, "KB"));
    call(panel(), "onSetText", Q_ARG(std::string, "Copying"));
    test::Application::deliverEvents();
    EXPECT_EQ(labelText(), "Copying");
    EXPECT_EQ(rangeText(), "51 of 200 KB");
}

TEST_F(PanelForwarding, LivesOnWithoutGaugeAndText)
{
    makePanel(test::displayType::amounts);
    const QLabel& label = sideLabel(0);
    const QLabel& range = sideLabel(2);
    panel().setBar(new QProgressBar);  // destroys the gauge
    panel().onSetRangeInGauge(200);
    panel().onSetValueInGauge(50);
    panel().onUpdateInGauge();
    test::Application::deliverEvents();
    EXPECT_EQ(range.text(), QStringLiteral("50 of 200"));
    delete &text();
    panel().onSetValueInGauge(60);
    panel().onSetText("Copying");
    panel().onSetUnits("KB");
    test::Application::deliverEvents();
    EXPECT_EQ(range.text(), QStringLiteral("50 of 200"));
    EXPECT_EQ(label.text(), QString());
}

TEST_F(PanelForwarding, WhatIsUnderWayIsDroppedWithThePanel)
{
    makePanel(test::displayType::amounts);
    panel().onSetRangeInGauge(200);
    panel().onSetText("Copying");
    delete &panel();
    test::Application::deliverEvents();
    SUCCEED();  // the address sanitizer would report a use after free
}

}  // namespace
