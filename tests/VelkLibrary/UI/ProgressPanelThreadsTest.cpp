#include "VelkLibrary/UI/PanelTest.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <gmock/gmock.h>

#include <QTest>
#include <QThread>

namespace {

using test::Application;

class PanelThreads : public test::PanelTest
{};

TEST_F(PanelThreads, AWorkerDrivesThePanel)
{
    makePanel(test::displayType::amounts);
    window_.show();
    LibraryProgressPanel& panel = this->panel();
    Application::runBesideEventLoop([&panel] {
        panel.onSetText("Copying");
        panel.onSetRangeInGauge(500);
        for (int step = 1; step <= 500; ++step)
            panel.onSetValueInGauge(step);
    });
    EXPECT_EQ(gauge().maximum(), 500);
    EXPECT_EQ(gauge().value(), 500);
    EXPECT_EQ(labelText(), "Copying");
    EXPECT_EQ(rangeText(), "500 of 500");
}

TEST_F(PanelThreads, AWorkerSetsUnitsWhileTextsAreMade)
{
    makePanel(test::displayType::amounts);
    LibraryProgressPanel& panel = this->panel();
    Application::runBesideEventLoop([&panel] {
        for (int step = 1; step <= 500; ++step) {
            panel.onSetUnits(step % 2 == 0 ? "a unit that is longer than a short string" : "KB");
            panel.onSetValueInGauge(step);
        }
        panel.onSetUnits("MB");
        panel.onSetRangeInGauge(500);
    });
    EXPECT_EQ(rangeText(), "500 of 500 MB");
}

TEST_F(PanelThreads, EverythingHappensOnTheWidgetsThread)
{
    makePanel(test::displayType::percentage);
    LibraryProgressPanel& panel = this->panel();
    std::vector<QThread*> threads;
    QObject::connect(
        &gauge(), &QProgressBar::valueChanged, &gauge(), [&] { threads.push_back(QThread::currentThread()); },
        Qt::DirectConnection);
    QObject::connect(
        &text(), &ProgressText::setRangeText, &text(), [&] { threads.push_back(QThread::currentThread()); },
        Qt::DirectConnection);
    Application::runBesideEventLoop([&panel] {
        for (int step = 1; step <= 10; ++step) {
            panel.onSetValueInGauge(step);
            panel.onUpdateInGauge();
        }
    });
    EXPECT_THAT(threads, testing::SizeIs(testing::Gt(30u)));
    EXPECT_THAT(threads, testing::Each(QThread::currentThread()));
}

TEST_F(PanelThreads, AllClicksWhileAWorkerDrivesArrive)
{
    makePanel(test::displayType::barOnly);
    window_.show();
    LibraryProgressPanel& panel = this->panel();
    int clicks = 0;
    QObject::connect(&gauge(), &QProgressBar::valueChanged, &gauge(), [&] {
        if (clicks < 50) {
            ++clicks;
            QTest::mouseClick(&gauge(), Qt::LeftButton);
        }
    });
    Application::runBesideEventLoop([&panel] {
        panel.onSetRangeInGauge(200);
        for (int step = 1; step <= 200; ++step)
            panel.onSetValueInGauge(step);
    });
    EXPECT_EQ(clicks, 50);
    EXPECT_EQ(storedDisplayTypes_.size(), 50u);
    EXPECT_EQ(rangeText(), "200 of 200") << "50 clicks lead from the bar alone to the amounts";
}

// ---- As a job's receiver -------------------------------------------------------------------------

TEST_F(PanelThreads, AJobReportsThroughTheBaseOfThePanel)
{
    makePanel(test::displayType::amounts);
    Application::runBesideEventLoop([progress = panel().progressHandle()] {
        progress.sendText("Copying");
        progress.sendUnits("KB");
        progress.sendRange(4294967297 + 9);
        progress.sendValue(2);
        progress.sendStep();
    });
    EXPECT_EQ(labelText(), "Copying");
    EXPECT_EQ(rangeText(), "3 of 10 KB");
    EXPECT_EQ(gauge().value(), 3);
}

TEST_F(PanelThreads, ACatalogUpdateReportsToThePanel)
{
    makePanel(test::displayType::amounts);
    texts_[test::textNumber::checkingCatalogs] = U"Checking";
    texts_[test::textNumber::checkingCatalog] = U"Looking at ";
    const fileString catalog = folder() / std::u32string(
                                              U"K\x00FC"
                                              U"che.calib");
    test::writeFile(catalog, "x");
    constexpr const char* nobodyListens = "http://127.0.0.1:1/";
    LibraryCatalogUpdate::LibraryCatalogUpdater updater(panel(), {catalog}, {}, {}, "planner", "12", nobodyListens,
                                                        true);
    std::vector<std::string> labels;
    QObject::connect(&text(), &ProgressText::setLabelText, &window_, [&labels](const QString& label) {
        if (labels.empty() || labels.back() != label.toStdString())
            labels.push_back(label.toStdString());
    });
    Application::runBesideEventLoop([&updater] { updater(); });
    EXPECT_THAT(labels, testing::IsSupersetOf({"Checking",
                                               "Looking at K\xC3\xBC"
                                               "che.calib"}));
    EXPECT_EQ(gauge().maximum(), 1);
    EXPECT_EQ(gauge().value(), 1);
    EXPECT_EQ(rangeText(), "1 of 1");
}

// In each round the panel is destroyed while a worker sends.
TEST_F(PanelThreads, AJobMayOutliveThePanel)
{
    constexpr std::size_t rounds = 100;
    constexpr std::size_t reports = 60;
    for (std::size_t round = 0; round < rounds; ++round) {
        makePanel(test::displayType::amounts);
        test::Tally allowed;  // or a fast worker would send for minutes
        test::Thread worker([&allowed, progress = panel().progressHandle()] {
            for (std::size_t report = 1; report <= reports; ++report) {
                allowed.waitFor(report);
                progress.sendText("a text that is longer than a short string");
                progress.sendStep();
            }
        });
        allowed.add(20);
        Application::deliverEvents();
        allowed.add(20 + round % 20);
        delete &panel();
        allowed.add(20 - round % 20);
        Application::deliverEvents();
        worker.join();
        Application::deliverEvents();
    }
    EXPECT_EQ(splitter_->count(), 1);
}

}  // namespace
