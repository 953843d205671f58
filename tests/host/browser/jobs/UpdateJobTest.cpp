#include "host/browser/BrowserTest.h"
#include "host/browser/OpenedUrls.h"

#include "host/browser/search/SearchPane.h"
#include "host/service/SiteService.h"
#include "support/Eventually.h"
#include "support/ScriptedServer.h"

#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>
#include <VelkLibrary/UI/ProgressGauge.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>

using test::furnitureCatalog;
using test::Reply;
using testing::HasSubstr;

namespace {

// ---- With the real publisher and service ---------------------------------------------------------

class UpdateJob : public test::BrowserTest
{
protected:
    void publish(const VelkHost::Catalog& catalog)
    {
        const fileString input = folder() / U"publish";
        test::writeFileDeep(input / U"core" / U"furniture.calib", test::catalogFileBytes(catalog));
        VelkHost::publish(input, folder() / U"site");
        if (service_ == nullptr) {
            VelkHost::ServiceOptions options;
            options.site = folder() / U"site";
            service_ = std::make_unique<VelkHost::SiteService>(options);
        }
    }

    void install(const VelkHost::Catalog& catalog) { test::writeFile(furniture, test::catalogFileBytes(catalog)); }

    void openWindowWithService()
    {
        openWindow();
        window().jobs().setService(QString::fromStdString(service_->address()));
    }

    void update()
    {
        ASSERT_TRUE(action("updateAction").isEnabled());
        action("updateAction").trigger();
        EXPECT_TRUE(window().jobs().isRunning());
        waitForJob();
    }

    const fileString furniture = core(U"furniture.calib");
    const QStringList seating{QStringLiteral("Furniture"), QStringLiteral("Seating")};
    const QStringList chairs = seating + QStringList(QStringLiteral("Chairs"));

private:
    std::unique_ptr<VelkHost::SiteService> service_;
};

TEST_F(UpdateJob, ReplacesAnOpenLibraryAndKeepsItsPlaceInTheTree)
{
    install(furnitureCatalog("Chair "));
    publish(furnitureCatalog("Armchair "));
    openWindowWithService();
    for (int depth = 1; depth <= 3; ++depth)
        tree().expand(folderIndex(furniture, chairs.mid(0, depth)));
    tree().setCurrentIndex(itemIndex(furniture, "chair#40"));
    tree().scrollTo(itemIndex(furniture, "chair#35"), QAbstractItemView::PositionAtTop);
    ASSERT_EQ(tree().indexAt(QPoint(0, 0)).data(), QStringLiteral("Chair 135"));

    update();
    EXPECT_EQ(message(), "“furniture” was updated.");
    EXPECT_EQ(itemIndex(furniture, "chair#40").data(), QStringLiteral("Armchair 140"));
    EXPECT_EQ(currentId(), "chair#40");
    EXPECT_EQ(named<QLabel>("detailName")->text(), QStringLiteral("Armchair 140"));
    for (int depth = 1; depth <= 3; ++depth)
        EXPECT_TRUE(tree().isExpanded(folderIndex(furniture, chairs.mid(0, depth)))) << depth;
    EXPECT_FALSE(tree().isExpanded(folderIndex(furniture, {chairs[0], QStringLiteral("Tables")})));
    EXPECT_EQ(tree().indexAt(QPoint(0, 0)).data(), QStringLiteral("Armchair 135"));
    EXPECT_FALSE(named<QToolButton>("errorLogButton")->isVisible());
}

TEST_F(UpdateJob, KeepsTheHitThatIsLookedAt)
{
    install(furnitureCatalog("Chair "));
    VelkHost::Catalog changed = furnitureCatalog("Armchair ");
    std::reverse(changed.items.begin(), changed.items.end());
    publish(changed);
    openWindowWithService();
    named<QLineEdit>("searchBox")->setText(QStringLiteral("140"));
    VelkHost::SearchResultModel& hits = window().searchPane()->model();
    test::eventually([&] { return hits.outcome() != nullptr; });
    window().searchPane()->view()->setCurrentIndex(hits.index(0, 0, hits.index(0, 0)));
    EXPECT_EQ(named<QLabel>("detailName")->text(), QStringLiteral("Chair 140"));
    update();
    EXPECT_EQ(named<QLabel>("detailName")->text(), QStringLiteral("Armchair 140"));
}

TEST_F(UpdateJob, BringsTheFirstLibrary)
{
    publish(furnitureCatalog("Chair "));
    openWindowWithService();
    EXPECT_TRUE(named<QLabel>("emptyState")->isVisible());
    update();
    EXPECT_EQ(message(), "“furniture” was updated.");
    EXPECT_EQ(model().rowCount(), 1);
    EXPECT_TRUE(tree().isVisible());
}

TEST_F(UpdateJob, SaysThatAllIsUpToDate)
{
    install(furnitureCatalog("Chair "));
    publish(furnitureCatalog("Chair "));
    openWindowWithService();
    tree().expand(folderIndex(furniture, {chairs[0]}));
    update();
    EXPECT_EQ(message(), "All libraries are up to date.");
    EXPECT_TRUE(tree().isExpanded(folderIndex(furniture, {chairs[0]})));
    EXPECT_TRUE(action("updateAction").isEnabled());
    EXPECT_FALSE(action("cancelAction").isEnabled());
    EXPECT_EQ(named<LibraryProgressPanel>("LibraryProgressPanel"), nullptr);
}

// ---- When something is wrong ---------------------------------------------------------------------

class UpdateJobTrouble : public test::BrowserTest
{};

TEST_F(UpdateJobTrouble, IsNotOfferedWithoutAService)
{
    openWindow();
    EXPECT_FALSE(action("updateAction").isEnabled());
    EXPECT_THAT(action("updateAction").toolTip().toStdString(), HasSubstr("--service"));
    window().jobs().checkForUpdates();
    EXPECT_FALSE(window().jobs().isRunning());
}

TEST_F(UpdateJobTrouble, LeadsToTheErrorLogWhenTheServiceIsGone)
{
    const test::RefusingPort nobody;
    test::writeFile(core(U"furniture.calib"), test::catalogFileBytes(furnitureCatalog("Chair ")));
    openWindow();
    window().jobs().setService(QString::fromStdString(nobody.url()));
    action("updateAction").trigger();
    waitForJob();
    EXPECT_EQ(message(),
              "The libraries cannot be updated: cannot reach " + nobody.url() + ": it does not accept connections");
    EXPECT_EQ(model().rowCount(), 1);
    QToolButton* const log = named<QToolButton>("errorLogButton");
    ASSERT_TRUE(log->isVisible());
    OpenedUrls opened;
    QTest::mouseClick(log, Qt::LeftButton);
    ASSERT_EQ(opened.urls.size(), 1);
    EXPECT_EQ(opened.urls[0], QUrl::fromLocalFile(qtPath(Library::ErrorLog::file())));
    EXPECT_THAT(test::readFile(Library::ErrorLog::file()), HasSubstr("Unable to determine api endpoint"));
}

/// A service that holds a download back.
class UpdateJobRunning : public test::BrowserTest
{
protected:
    UpdateJobRunning()
    {
        const std::string current = test::catalogFileBytes(furnitureCatalog("Chair "));
        test::writeFile(furniture, current);
        Reply slow = Reply::file(test::catalogFileBytes(furnitureCatalog("Armchair ")), "new");
        slow.block = 1'000;
        slow.beforeBlock = gate;
        server.on("/api", [slow](const test::SeenRequest& request) {
            if (request.parameter("library") == "furniture.calib")
                return slow;
            const bool isIndex = request.parameter("library") == "Standard_Core_Content_Index.txt";
            return isIndex ? Reply::file("furniture.calib\n", "index") : Reply{};
        });
    }

    void startUpdate()
    {
        openWindow();
        window().jobs().setService(QString::fromStdString(server.url("/api?key=k")));
        action("updateAction").trigger();
        gate.waitForArrivals(1);
        test::eventually([this] { return named<LibraryProgressPanel>("LibraryProgressPanel")->isVisible(); });
    }

    const fileString furniture = core(U"furniture.calib");
    test::Gate gate;
    test::ScriptedServer server;
};

TEST_F(UpdateJobRunning, IsTheOnlyJob)
{
    startUpdate();
    EXPECT_FALSE(action("updateAction").isEnabled());
    EXPECT_FALSE(action("importAction").isEnabled());
    EXPECT_TRUE(action("cancelAction").isEnabled());
    const fileString file = folder() / U"garden.calib";
    test::writeCatalogFile(file, "Tree");
    window().jobs().importFiles({qtPath(file)});
    gate.openForGood();
    waitForJob();
    EXPECT_EQ(message(), "“furniture” was updated.");
    EXPECT_FALSE(user(U"garden.calib").pathExists());
    EXPECT_TRUE(action("importAction").isEnabled());
}

// How much there is to do is known when the service has answered.
TEST_F(UpdateJobRunning, IsBusyAtFirst)
{
    test::Gate first;
    Reply index;
    index.beforeHeader = first;
    server.on("/api", index);
    openWindow();
    window().jobs().setService(QString::fromStdString(server.url("/api?key=k")));
    action("updateAction").trigger();
    first.waitForArrivals(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(window().findChild<ProgressGauge*>()->maximum(), 0);
    first.openForGood();
    waitForJob();
}

TEST_F(UpdateJobRunning, EndsWithTheWindow)
{
    startUpdate();
    closeWindow();
    EXPECT_THAT(test::listFolder(folder() / U"temp" / U"velk.downloads.core"), testing::IsEmpty());
}

/// How users cancel.
struct CancelWay
{
    const char* name;
    void (*cancel)(VelkHost::BrowserWindow& window);
    bool closes = false;
};

class UpdateJobCancelled : public UpdateJobRunning, public testing::WithParamInterface<CancelWay>
{};

TEST_P(UpdateJobCancelled, LeavesTheLibraryAsItWas)
{
    const std::string installed = test::readFile(furniture);
    startUpdate();
    GetParam().cancel(window());
    EXPECT_FALSE(action("cancelAction").isEnabled());
    EXPECT_TRUE(window().isVisible());
    waitForJob();
    EXPECT_EQ(message(), "The update was cancelled.");
    EXPECT_EQ(test::readFile(furniture), installed);
    EXPECT_EQ(window().isVisible(), !GetParam().closes);
    EXPECT_EQ(itemIndex(furniture, "chair#1").data(), QStringLiteral("Chair 101"));
}

INSTANTIATE_TEST_SUITE_P(
    Ways, UpdateJobCancelled,
    testing::Values(CancelWay{"Button",
                              [](VelkHost::BrowserWindow& window) {
                                  QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("cancelButton")),
                                                    Qt::LeftButton);
                              }},
                    CancelWay{"Escape",
                              [](VelkHost::BrowserWindow& window) { QTest::keyClick(&window, Qt::Key_Escape); }},
                    CancelWay{"Close", [](VelkHost::BrowserWindow& window) { window.close(); }, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(UpdateJobRunning, GivesEscapeBackToTheSearch)
{
    gate.openForGood();
    startUpdate();
    waitForJob();
    auto* const box = named<QLineEdit>("searchBox");
    box->setText(QStringLiteral("chair"));
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_EQ(box->text(), QString());
}

}  // namespace
