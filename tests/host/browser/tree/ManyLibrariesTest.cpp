// Thousands of libraries: what the window does for each of them it may not do with all of them.
#include "host/browser/BrowserTest.h"

#include "host/browser/search/SearchPane.h"
#include "host/browser/tree/LibraryLoader.h"
#include "support/Eventually.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <chrono>
#include <functional>
#include <future>
#include <thread>

using test::furnitureCatalog;
using VelkHost::BrowsedLibrary;
using VelkHost::Catalog;
using VelkHost::CatalogOrder;
using VelkHost::LibraryArrival;
using VelkHost::LibrarySet;

namespace {

constexpr int libraryCount = 40;

Catalog numbered(int number)
{
    Catalog catalog = furnitureCatalog("Chair ");
    catalog.id = std::to_string(number);
    catalog.folders[0].name = "Furniture " + std::to_string(100 + number);
    return catalog;
}

LibraryArrival arrivalOf(const fileString& path, Catalog catalog)
{
    const auto shared = std::make_shared<const Catalog>(std::move(catalog));
    return {{path, shared, std::make_shared<const CatalogOrder>(*shared)}, {}};
}

LibraryArrival outlineOf(const fileString& path, Catalog catalog)
{
    catalog.items.clear();
    return {{path, std::make_shared<const Catalog>(std::move(catalog)), nullptr}, {}};
}

/// A catalog that tells which thread has freed it.
std::shared_ptr<const Catalog> watched(std::promise<std::thread::id>& freed)
{
    return {new Catalog(furnitureCatalog("Chair ")), [&freed](const Catalog* catalog) {
                delete catalog;
                freed.set_value(std::this_thread::get_id());
            }};
}

// ---- The loader ----------------------------------------------------------------------------------

class ManyFiles : public test::TestHost
{
protected:
    ManyFiles()
    {
        const std::string bytes = test::catalogFileBytes(numbered(0));
        for (int i = 0; i < libraryCount; ++i) {
            files.push_back(folder() / U"core" / fileString(std::to_string(100 + i) + ".calib"));
            test::writeFile(files.back(), bytes);
        }
        QObject::connect(&loader, &VelkHost::LibraryLoader::arrived,
                         [this](const std::vector<LibraryArrival>& arrivals) { batches.push_back(arrivals); });
    }

    /// Waits until the loader has read what it was asked for, while this thread takes no event.
    void readAll()
    {
        std::promise<std::thread::id> freed;
        loader.release({{folder(), watched(freed), nullptr}});
        std::future<std::thread::id> future = freed.get_future();
        ASSERT_EQ(future.wait_for(test::patience), std::future_status::ready);
        EXPECT_NE(future.get(), std::this_thread::get_id());
    }

    void takeEvents()
    {
        test::eventually([this] { return !loader.isReading(); });
    }

    std::vector<fileString> files;
    VelkHost::LibraryLoader loader;
    std::vector<std::vector<LibraryArrival>> batches;
};

TEST_F(ManyFiles, ArriveTogetherInTheirOrder)
{
    loader.read(files);
    readAll();
    takeEvents();
    ASSERT_EQ(batches.size(), 1U);
    ASSERT_EQ(batches[0].size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(batches[0][i].library.path, files[i]);
        EXPECT_NE(batches[0][i].library.order, nullptr) << "a small library is read completely at once";
    }
}

TEST_F(ManyFiles, ArriveTogetherWhenTheyAreAskedForOneAfterTheOther)
{
    QSignalSpy finished(&loader, &VelkHost::LibraryLoader::finished);
    for (const fileString& file : files)
        loader.read({file});
    readAll();
    takeEvents();
    EXPECT_EQ(batches.size(), 1U);
    EXPECT_EQ(finished.size(), 1);
}

TEST_F(ManyFiles, LeaveOtherEventsTheirTurn)
{
    std::vector<fileString> many(2 * VelkHost::LibraryLoader::mostAtOnce, folder() / U"nowhere.calib");
    loader.read(many);
    readAll();
    int turns = 0;
    QObject::connect(&loader, &VelkHost::LibraryLoader::arrived, &loader, [&] {
        QMetaObject::invokeMethod(
            &loader, [&turns] { ++turns; }, Qt::QueuedConnection);
    });
    std::vector<int> turnsBefore;
    QObject::connect(&loader, &VelkHost::LibraryLoader::arrived, &loader, [&] { turnsBefore.push_back(turns); });
    takeEvents();
    EXPECT_EQ(turnsBefore, (std::vector<int>{0, 1}));
    for (const std::vector<LibraryArrival>& batch : batches)
        EXPECT_EQ(batch.size(), VelkHost::LibraryLoader::mostAtOnce);
}

TEST_F(ManyFiles, BeginWithTheOutlineOfALargeOne)
{
    Catalog large = numbered(0);
    large.description.assign(1'000'000, 'x');
    test::writeFile(files[0], test::catalogFileBytes(large));
    loader.read({files[0], files[1]});
    readAll();
    takeEvents();
    std::vector<LibraryArrival> arrivals;
    for (const std::vector<LibraryArrival>& batch : batches)
        arrivals.insert(arrivals.end(), batch.begin(), batch.end());
    ASSERT_EQ(arrivals.size(), 3U);
    EXPECT_EQ(arrivals[0].library.order, nullptr);
    EXPECT_EQ(arrivals[1].library.path, files[1]);
    EXPECT_EQ(arrivals[2].library.path, files[0]);
    EXPECT_NE(arrivals[2].library.order, nullptr);
}

// ---- The window ----------------------------------------------------------------------------------

class ManyLibraries : public test::BrowserTest
{
protected:
    ManyLibraries()
    {
        for (int i = 0; i < libraryCount; ++i)
            paths.push_back(core(fileString(std::to_string(100 + i) + ".calib").unicodeString()));
    }

    /// Hands all libraries to the model, made by a function from their paths and catalogs.
    void take(const std::function<LibraryArrival(const fileString&, Catalog)>& make)
    {
        std::vector<LibraryArrival> arrivals;
        for (std::size_t i = 0; i < paths.size(); ++i)
            arrivals.push_back(make(paths[i], numbered(static_cast<int>(i))));
        model().take(arrivals);
    }

    VelkHost::SearchRunner& runner() { return window().searchPane()->runner(); }

    std::vector<fileString> paths;
};

TEST_F(ManyLibraries, EnterTheTreeTogether)
{
    openWindow();
    QSignalSpy inserted(&model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy laidOut(&model(), &QAbstractItemModel::layoutChanged);
    take(outlineOf);
    EXPECT_EQ(model().rowCount(), libraryCount);
    EXPECT_TRUE(model().hasChildren(model().index(0, 0)));
    EXPECT_EQ(inserted.size(), 1);
    EXPECT_EQ(laidOut.size(), 0);
    take(arrivalOf);
    EXPECT_EQ(inserted.size(), 1) << "an outline's categories stay";
    EXPECT_EQ(laidOut.size(), 1);
    take(arrivalOf);
    EXPECT_EQ(inserted.size(), 2);
    EXPECT_EQ(removed.size(), 1);
    EXPECT_EQ(model().rowCount(), libraryCount);
}

TEST_F(ManyLibraries, LeaveAndEnterTheTreeTogetherWhenAFilterHidesThem)
{
    openWindow();
    take(arrivalOf);
    QSignalSpy inserted(&model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model(), &QAbstractItemModel::rowsRemoved);
    model().setShown([](const BrowsedLibrary& library) { return library.catalog->id == "0"; });
    EXPECT_EQ(model().rowCount(), 1);
    EXPECT_EQ(removed.size(), 1);
    model().setShown([](const BrowsedLibrary&) { return true; });
    EXPECT_EQ(model().rowCount(), libraryCount);
    EXPECT_EQ(inserted.size(), 1);
}

TEST_F(ManyLibraries, KeepTheirOrderWhenTheirCategoriesHaveTheSameName)
{
    openWindow();
    for (const char32_t* name : {U"b.calib", U"a.calib", U"c.calib"})
        model().take({arrivalOf(core(name), furnitureCatalog("Chair "))});
    const auto order = [this] {
        std::vector<fileString> order;
        for (int row = 0; row < model().rowCount(); ++row)
            order.push_back(model().place(model().index(row, 0))->library);
        return order;
    };
    const std::vector<fileString> before{core(U"b.calib"), core(U"a.calib"), core(U"c.calib")};
    EXPECT_EQ(order(), before);
    model().take({arrivalOf(core(U"b.calib"), furnitureCatalog("Armchair "))});
    EXPECT_EQ(order(), before);
}

TEST_F(ManyLibraries, OfSeveralVersionsThatArriveTogetherTheLastCounts)
{
    openWindow();
    const fileString path = core(U"a.calib");
    model().take({outlineOf(path, furnitureCatalog("Chair ")), arrivalOf(path, furnitureCatalog("Chair ")),
                  outlineOf(path, furnitureCatalog("Armchair ")), arrivalOf(path, furnitureCatalog("Armchair ")),
                  outlineOf(path, furnitureCatalog("Stool "))});
    EXPECT_EQ(model().rowCount(), 1);
    EXPECT_EQ(itemIndex(path, "chair#0").data(), QStringLiteral("Armchair 100"));
    LibraryArrival broken;
    broken.library.path = path;
    broken.failure = QStringLiteral("is damaged");
    model().take({broken});
    EXPECT_EQ(model().rowCount(), 0);
    model().take({broken, outlineOf(path, numbered(7))});
    EXPECT_EQ(model().index(0, 0).data(), QStringLiteral("Furniture 107"));
}

TEST_F(ManyLibraries, StartOneSearchHoweverManyArrive)
{
    openWindow();
    int asked = 0;
    runner().setSource([&asked] { return ++asked, VelkHost::SearchedLibraries(); });
    int found = 0;
    QObject::connect(&runner(), &VelkHost::SearchRunner::found, &window(), [&found] { ++found; });
    runner().search(QStringLiteral("chair"));
    test::eventually([&] { return found == 1; });
    for (int i = 0; i < libraryCount; ++i)
        runner().librariesChanged();
    test::eventually([&] { return found == 2; });
    EXPECT_EQ(asked, 2);
}

TEST_F(ManyLibraries, DoNotKeepAKeyFromItsAnswerWhileTheyArrive)
{
    const fileString path = core(U"a.calib");
    test::writeFile(path, test::catalogFileBytes(furnitureCatalog("Chair ")));
    openWindow();
    QTimer arriving;
    QObject::connect(&arriving, &QTimer::timeout, &window(),
                     [&] { Q_EMIT window().jobs().libraryInstalled(path, false); });
    arriving.start(VelkHost::SearchRunner::pauseMilliseconds / 20);
    auto* const box = named<QLineEdit>("searchBox");
    for (const char* const key : {"c", "h"}) {
        QTest::keyClicks(box, QString::fromLatin1(key));
        test::eventually([this] { return test::hasSearched(window()); });
    }
    EXPECT_FALSE(test::resultRows(window().searchPane()->model()).isEmpty());
    arriving.stop();
    test::eventually([this] { return !window().isReading(); });
}

TEST_F(ManyLibraries, AreFreedOnAnotherThreadWhenAnOutcomeWasTheLastToHoldThem)
{
    openWindow();
    named<QLineEdit>("searchBox")->setText(QStringLiteral("chair"));  // without a text, no outcome stays
    test::eventually([this] { return test::hasSearched(window()); });
    std::promise<std::thread::id> freed;
    const auto show = [this](const std::vector<VelkHost::LoadedLibrary>& libraries) {
        VelkHost::SearchIndex index;
        index.setLibraries(libraries);
        VelkHost::SearchOutcome outcome{{}, VelkHost::searchInfo({}), {}};
        outcome.result.state = index.state();
        Q_EMIT runner().found(std::make_shared<const VelkHost::SearchOutcome>(std::move(outcome)));
    };
    show({{paths[0], watched(freed)}});
    show({});
    std::future<std::thread::id> future = freed.get_future();
    ASSERT_EQ(future.wait_for(test::patience), std::future_status::ready);
    EXPECT_NE(future.get(), std::this_thread::get_id());
}

TEST_F(ManyLibraries, HaveNoDetailsForAHitThatANewVersionDoesNotHave)
{
    const fileString path = core(U"a.calib");
    test::writeFile(path, test::catalogFileBytes(furnitureCatalog("Chair ")));
    openWindow();
    named<QLineEdit>("searchBox")->setText(QStringLiteral("159"));
    test::eventually([this] { return test::hasSearched(window()); });
    Catalog fewer = furnitureCatalog("Chair ");
    fewer.items.resize(3);
    model().take({arrivalOf(path, fewer)});
    QTreeView& hits = *window().searchPane()->view();
    hits.setCurrentIndex(hits.model()->index(0, 0, hits.model()->index(0, 0)));
    EXPECT_EQ(named<QLabel>("detailName")->text(), QString());
}

}  // namespace
