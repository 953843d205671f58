#include "VelkLibrary/UI/PanelTest.h"
#include "support/Numbers.h"

#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <gmock/gmock.h>

#include <QMouseEvent>
#include <QTest>

#include <limits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int lowestSize = std::numeric_limits<int>::min();
constexpr int highestSize = std::numeric_limits<int>::max();

class ProgressGaugeTest : public test::PanelTest
{
protected:
    static int storedPreference()
    {
        return *PreferenceEngine::getThePrefs().getPrefSet().get<int>(test::preference::progressDisplay);
    }

    void click(Qt::MouseButton button = Qt::LeftButton)
    {
        window_.show();
        QTest::mouseClick(&gauge(), button);
        test::Application::deliverEvents();
    }

    static QMouseEvent releaseOf(Qt::MouseButton button)
    {
        const QPointF place(1, 1);
        return {QEvent::MouseButtonRelease, place, place, button, Qt::NoButton, Qt::NoModifier};
    }

    std::string toolTip() const { return gauge().toolTip().toStdString(); }
};

TEST_F(ProgressGaugeTest, BeginsAtZero)
{
    makePanel(test::displayType::barOnly);
    EXPECT_EQ(gauge().minimum(), 0);
    EXPECT_EQ(gauge().maximum(), 100);
    EXPECT_EQ(gauge().value(), 0);
    EXPECT_FALSE(gauge().isTextVisible());
    EXPECT_EQ(gauge().contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(gauge().parentWidget(), &panel());
}

// ---- Values and ranges ---------------------------------------------------------------------------

TEST_F(ProgressGaugeTest, ShowsValuesAndTellsTheTextLater)
{
    makePanel(test::displayType::amounts);
    gauge().onSetRange(200);
    gauge().onSetValue(50);
    EXPECT_EQ(gauge().maximum(), 200);
    EXPECT_EQ(gauge().value(), 50);
    EXPECT_EQ(rangeText(), "");
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "50 of 200");
}

TEST_F(ProgressGaugeTest, ARangeCountsFromTheMinimum)
{
    makePanel(test::displayType::amounts);
    gauge().setMinimum(10);
    gauge().onSetRange(5);
    EXPECT_EQ(gauge().minimum(), 10);
    EXPECT_EQ(gauge().maximum(), 15);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "0 of 5");
}

TEST_F(ProgressGaugeTest, AValueBeyondTheRangeMovesTheTextAlone)
{
    makePanel(test::displayType::amounts);
    gauge().onSetValue(40);
    gauge().onSetValue(300);
    EXPECT_EQ(gauge().value(), 40);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "300 of 0");
}

TEST_F(ProgressGaugeTest, ARangeKeepsAValueThatWasSet)
{
    makePanel(test::displayType::barOnly);
    gauge().onSetValue(50);
    gauge().onSetRange(200);
    EXPECT_EQ(gauge().value(), 50);
}

TEST_F(ProgressGaugeTest, ExtremeNumbersDoNotOverflow)
{
    makePanel(test::displayType::amounts);
    gauge().onSetRange(highestSize);
    EXPECT_EQ(gauge().maximum(), highestSize);
    gauge().onSetValue(highestSize);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), highestSize);
    gauge().onSetRange(lowestSize);
    gauge().onSetRange(lowestSize);
    EXPECT_EQ(gauge().minimum(), lowestSize);
    gauge().onSetValue(lowestSize);
    gauge().onUpdate();
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "-2,147,483,648 of -2,147,483,648");
}

// ---- Steps ---------------------------------------------------------------------------------------

TEST_F(ProgressGaugeTest, AStepGoesOneFurther)
{
    makePanel(test::displayType::amounts);
    gauge().onSetRange(3);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 1);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 2);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "2 of 3");
}

TEST_F(ProgressGaugeTest, AStepGoesOnFromAValueThatWasSet)
{
    makePanel(test::displayType::barOnly);
    gauge().onSetValue(50);
    gauge().onSetRange(200);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 51);
}

TEST_F(ProgressGaugeTest, StepsEndAtTheEnd)
{
    makePanel(test::displayType::amounts);
    gauge().onSetRange(2);
    for (int step = 0; step < 5; ++step)
        gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 2);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "2 of 2");
}

TEST_F(ProgressGaugeTest, ARangeLeavesTheValue)
{
    makePanel(test::displayType::amounts);
    gauge().onSetRange(10);
    for (int step = 0; step < 3; ++step)
        gauge().onUpdate();
    gauge().onSetRange(20);
    EXPECT_EQ(gauge().maximum(), 20);
    EXPECT_EQ(gauge().value(), 3);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "3 of 20");
}

TEST_F(ProgressGaugeTest, TheFirstStepOfABarThatWasResetIsOne)
{
    makePanel(test::displayType::barOnly);
    gauge().onSetValue(80);
    gauge().onSetRange(5);  // Qt resets a bar whose value is beyond its new end
    ASSERT_EQ(gauge().value(), -1);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 1);
}

TEST_F(ProgressGaugeTest, WithoutLengthThereAreNoSteps)
{
    makePanel(test::displayType::barOnly);
    gauge().onSetRange(0);
    gauge().onUpdate();
    EXPECT_EQ(gauge().value(), 0);
}

// ---- Clicks --------------------------------------------------------------------------------------

TEST_F(ProgressGaugeTest, AClickGoesToTheNextDisplayType)
{
    makePanel(test::displayType::barOnly);
    panel().onSetRangeInGauge(200);
    panel().onSetValueInGauge(50);
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "");
    click();
    EXPECT_EQ(rangeText(), "25");
    EXPECT_EQ(storedPreference(), test::displayType::percentage);
    click();
    EXPECT_EQ(rangeText(), "50 of 200");
    EXPECT_EQ(storedPreference(), test::displayType::amounts);
    click();
    EXPECT_EQ(rangeText(), "");
    EXPECT_EQ(storedPreference(), test::displayType::barOnly);
}

TEST_F(ProgressGaugeTest, TheTextFollowsThroughTheQueue)
{
    makePanel(test::displayType::barOnly);
    panel().onSetRangeInGauge(200);
    panel().onSetValueInGauge(50);
    test::Application::deliverEvents();
    QMouseEvent release = releaseOf(Qt::LeftButton);
    QCoreApplication::sendEvent(&gauge(), &release);
    EXPECT_EQ(storedPreference(), test::displayType::percentage);
    EXPECT_EQ(toolTip(), "tip of the percentage");
    EXPECT_EQ(rangeText(), "");
    test::Application::deliverEvents();
    EXPECT_EQ(rangeText(), "25");
}

class ThreeClicks : public ProgressGaugeTest, public testing::WithParamInterface<int>
{};

TEST_P(ThreeClicks, LeadBack)
{
    makePanel(GetParam());
    const std::string before = toolTip();
    for (int i = 0; i < 3; ++i)
        click();
    EXPECT_EQ(storedPreference(), GetParam());
    EXPECT_EQ(toolTip(), before);
    ASSERT_THAT(storedDisplayTypes_, SizeIs(3));
    EXPECT_EQ(std::any_cast<int>(storedDisplayTypes_[0]), GetParam() % 3 + 1);
    EXPECT_EQ(std::any_cast<int>(storedDisplayTypes_[2]), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Rows, ThreeClicks,
                         testing::Values(test::displayType::barOnly, test::displayType::percentage,
                                         test::displayType::amounts));

TEST_F(ProgressGaugeTest, TheToolTipIsThatOfTheDisplayType)
{
    makePanel(test::displayType::barOnly);
    EXPECT_EQ(toolTip(), "tip of the bar");
    click();
    EXPECT_EQ(toolTip(), "tip of the percentage");
    click();
    EXPECT_EQ(toolTip(), "tip of the amounts");
    click();
    EXPECT_EQ(toolTip(), "tip of the bar");
}

class UnknownDisplayType : public ProgressGaugeTest, public testing::WithParamInterface<int>
{};

TEST_P(UnknownDisplayType, StaysAndHasNoToolTip)
{
    makePanel(GetParam());
    EXPECT_EQ(toolTip(), "");
    click();
    EXPECT_EQ(toolTip(), "");
    EXPECT_EQ(storedPreference(), GetParam());
    EXPECT_THAT(storedDisplayTypes_, SizeIs(1)) << "written all the same";
}

INSTANTIATE_TEST_SUITE_P(Rows, UnknownDisplayType, testing::Values(0, 4, -1, lowestSize, highestSize));

TEST_F(ProgressGaugeTest, APreferenceOfAnotherTypeIsReportedAndKept)
{
    makePanel(test::displayType::barOnly);
    installDisplayType(std::string("two"));
    click();
    ASSERT_THAT(messages(), SizeIs(1));
    EXPECT_THAT(messages()[0].formatted(), testing::HasSubstr("Set pref isA failure:"));
    EXPECT_THAT(storedDisplayTypes_, IsEmpty());
    EXPECT_EQ(toolTip(), "tip of the percentage") << "the click counts all the same";
}

class OtherButtons : public ProgressGaugeTest, public testing::WithParamInterface<Qt::MouseButton>
{};

TEST_P(OtherButtons, ChangeNothing)
{
    makePanel(test::displayType::percentage);
    click(GetParam());
    EXPECT_EQ(storedPreference(), test::displayType::percentage);
    EXPECT_EQ(toolTip(), "tip of the percentage");
    EXPECT_THAT(storedDisplayTypes_, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, OtherButtons, testing::Values(Qt::RightButton, Qt::MiddleButton, Qt::BackButton));

// Counts the releases that reach the widget that it watches.
class ReleaseCounter : public QObject
{
public:
    explicit ReleaseCounter(QObject* watched) { watched->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonRelease)
            ++count;
        return QObject::eventFilter(watched, event);
    }
};

TEST_F(ProgressGaugeTest, AReleaseGoesOnToTheParents)
{
    makePanel(test::displayType::barOnly);
    ReleaseCounter atPanel(&panel());
    ReleaseCounter atWindow(&window_);
    click(Qt::LeftButton);
    click(Qt::RightButton);
    EXPECT_EQ(atPanel.count, 2);
    EXPECT_EQ(atWindow.count, 2);
}

TEST_F(ProgressGaugeTest, AReleaseIsMarkedAsIgnored)
{
    makePanel(test::displayType::barOnly);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        QMouseEvent release = releaseOf(button);
        release.accept();
        QCoreApplication::sendEvent(&gauge(), &release);
        EXPECT_FALSE(release.isAccepted());
    }
}

TEST_F(ProgressGaugeTest, LivesOnWithoutItsText)
{
    makePanel(test::displayType::barOnly);
    delete &text();
    click();
    gauge().onSetRange(20);
    gauge().onSetValue(4);
    gauge().onUpdate();
    test::Application::deliverEvents();
    EXPECT_EQ(gauge().value(), 5);
    EXPECT_EQ(storedPreference(), test::displayType::percentage);
    EXPECT_EQ(rangeText(), "");
}

}  // namespace
