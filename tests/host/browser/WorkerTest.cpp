// The user-interface thread reads no library: while nobody may read one, the window still answers.
#include "DrivenWindow.h"

#include "host/browser/Worker.h"
#include "host/browser/jobs/InstalledFiles.h"

#include <VelkLibrary/ErrorLog.h>

#include "support/Eventually.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTreeView>

#include <mutex>
#include <new>
#include <shared_mutex>
#include <stdexcept>

namespace {

class WhileFilesAreHeld : public test::DrivenWindow
{
protected:
    /// Keeps everybody from reading an installed library or a picture until release().
    void hold() { held_ = std::unique_lock(VelkHost::installedFiles()); }
    void release() { held_.unlock(); }

    void openInstalled()
    {
        open(options());
        press(Qt::Key_F5);
        waitForJob();
    }

private:
    std::unique_lock<std::shared_mutex> held_;
};

TEST_F(WhileFilesAreHeld, TheWindowOpensAndTakesKeys)
{
    openInstalled();
    close();
    hold();
    VelkHost::BrowserWindow opened(options());
    QSignalSpy read(&opened, &VelkHost::BrowserWindow::librariesRead);
    opened.show();
    opened.readLibraries();
    auto* const box = opened.findChild<QLineEdit*>(QStringLiteral("searchBox"));
    QTest::keyClicks(box, QStringLiteral("chair"));
    QCoreApplication::processEvents();
    EXPECT_EQ(box->text(), QStringLiteral("chair"));
    EXPECT_TRUE(opened.isReading());
    EXPECT_EQ(opened.model().rowCount(), 0);
    release();
    eventually([&] { return !read.isEmpty(); });
    EXPECT_EQ(opened.model().rowCount(), 2);
}

TEST_F(WhileFilesAreHeld, ItemsAreLookedAtAndFound)
{
    openInstalled();
    settle();
    hold();
    EXPECT_EQ(search(QStringLiteral("table")), QStringList({QStringLiteral("Table"), QStringLiteral("Tables")}));
    press(Qt::Key_Return);
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    window().grab();  // paints it
    EXPECT_EQ(seen("detailName"), "Table");
    EXPECT_FALSE(showsPicture("detailPicture"));
    release();
    eventually([this] { return showsPicture("detailPicture"); });
}

TEST(Worker, TellsWhenAJobHadTooLittleMemory)
{
    VelkHost::Worker worker;
    bool hasArrived = false;
    bool ranOut = false;
    worker.run([]() -> VelkHost::Worker::Arrival { throw std::bad_alloc(); }, [&] { ranOut = true; });
    worker.run([&]() -> VelkHost::Worker::Arrival { return [&] { hasArrived = true; }; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return hasArrived; }, 60'000));
    EXPECT_TRUE(ranOut);
    EXPECT_FALSE(worker.isBusy());
}

class WorkerJob : public test::TestHost
{};

TEST_F(WorkerJob, WhatItThrowsGoesToTheErrorLog)
{
    VelkHost::Worker worker;
    bool nextArrived = false;
    worker.run([]() -> VelkHost::Worker::Arrival { throw std::runtime_error("out of chairs"); });
    worker.run([&]() -> VelkHost::Worker::Arrival { return [&] { nextArrived = true; }; });
    test::eventually([&] { return nextArrived; });
    EXPECT_FALSE(worker.isBusy());
    EXPECT_THAT(test::readFile(Library::ErrorLog::file()), testing::HasSubstr("out of chairs"));
}

}  // namespace
