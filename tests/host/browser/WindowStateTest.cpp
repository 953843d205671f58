#include "BrowserTest.h"

#include "host/browser/StoredPreferences.h"
#include "host/browser/filters/KindMenu.h"
#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/search/SearchPane.h"
#include "support/Numbers.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QSplitter>
#include <QTreeView>

using test::furnitureCatalog;
using VelkHost::LibraryKind;

namespace {

class KeptWindow : public test::BrowserTest
{
protected:
    KeptWindow() { test::writeFile(library, test::catalogFileBytes(furnitureCatalog("Chair "))); }

    void restart()
    {
        window().close();
        closeWindow();
        openWindow();
    }

    static QStringList names(const char* path) { return QString::fromLatin1(path).split(u'/'); }

    const fileString library = core(U"furniture.calib");
};

TEST_F(KeptWindow, OpensTheSameFoldersAndSelectsTheSameItem)
{
    openWindow();
    for (const char* path : {"Furniture", "Furniture/Seating", "Furniture/Seating/Chairs"})
        tree().expand(folderIndex(library, names(path)));
    tree().setCurrentIndex(itemIndex(library, "chair#7"));
    restart();
    EXPECT_EQ(currentId(), "chair#7");
    EXPECT_TRUE(tree().isExpanded(folderIndex(library, names("Furniture/Seating/Chairs"))));
    EXPECT_FALSE(tree().isExpanded(folderIndex(library, names("Furniture/Tables"))));
}

TEST_F(KeptWindow, KeepsTheStateOfALibraryThatCouldNotBeRead)
{
    openWindow();
    tree().expand(folderIndex(library, names("Furniture")));
    window().close();
    closeWindow();
    const std::string bytes = test::readFile(library);
    test::writeFile(library, "no library");
    openWindow();
    window().close();
    closeWindow();
    test::writeFile(library, bytes);
    openWindow();
    EXPECT_TRUE(tree().isExpanded(folderIndex(library, names("Furniture"))));
}

TEST_F(KeptWindow, KeepsItsSizeSplitterKindsAndExplanation)
{
    openWindow();
    window().columns()->setSizes({500, 300});
    const QByteArray columns = window().columns()->saveState();
    window().searchPane()->setExplained(true);
    window().shownLibraries()->kindMenu()->setHidden({LibraryKind::Bonus});
    restart();
    EXPECT_EQ(window().columns()->saveState(), columns);
    EXPECT_TRUE(window().searchPane()->isExplained());
    EXPECT_EQ(window().shownLibraries()->kindMenu()->hidden(), std::set<LibraryKind>{LibraryKind::Bonus});
}

TEST_F(KeptWindow, OpensWithAnyFileOfSettings)
{
    test::writeFile(
        user(U"browser.ini"),
        "[window]\ngeometry=@ByteArray(nonsense)\ncolumns=7\n[libraries]\nsize=3\n1\\path=x\n2\\open=@Invalid()\n");
    openWindow();
    EXPECT_EQ(model().rowCount(), 1);
}

TEST_F(KeptWindow, LeavesOtherSettingsAsTheyAre)
{
    test::writeFile(user(U"browser.ini"), "[later]\nkept=something\n");
    openWindow();
    restart();
    const QSettings settings(VelkHost::settingsFile(), QSettings::IniFormat);
    EXPECT_EQ(settings.value(QStringLiteral("later/kept")).toString(), QStringLiteral("something"));
    EXPECT_TRUE(settings.contains(QStringLiteral("window/columns")));
}

// Qt 5 and Qt 6 write texts in different ways, and the window may have been closed by a program with the other one.
TEST_F(KeptWindow, ReadsTextsOfEitherQt)
{
    const fileString named = core(U"M\u00F6bel.calib");
    test::writeFile(named, test::readFile(library));
    const QString path = qtPath(named).replace(u'\\', QStringLiteral("\\\\"));
    test::writeFile(user(U"browser.ini"),
                    "[later]\nqt5=M\\xf6\\x62\\x65l \\xd83d\\xde00\nqt6=M\u00F6bel \U0001F600\n[libraries]\n"
                    "1\\open=Furniture\n1\\path=" +
                        path.toStdString() + "\nsize=1\n");
    openWindow();
    EXPECT_TRUE(tree().isExpanded(folderIndex(named, names("Furniture"))));
    restart();
    const QSettings settings(VelkHost::settingsFile(), QSettings::IniFormat);
    for (const char* const key : {"later/qt5", "later/qt6"})
        EXPECT_EQ(settings.value(QLatin1String(key)).toString(), QStringLiteral("M\u00F6bel \U0001F600")) << key;
}

TEST_F(KeptWindow, SaysWhyItsStateCannotBeKept)
{
    test::writeFileDeep(user(U"browser.ini/kept.txt"), "kept");
    openWindow();
    window().close();
    EXPECT_THAT(window().unsaved().toStdString(), testing::EndsWith("browser.ini: is a folder, not a file"));
    EXPECT_EQ(test::readFile(user(U"browser.ini/kept.txt")), "kept");
}

// The lock stays behind, empty, where QSettings is killed while it takes it. Others then wait for thirty seconds.
TEST_F(KeptWindow, IsNotHeldUpByALockThatWasLeftBehind)
{
    openWindow();
    test::writeFile(user(U"browser.ini.lock"), "");
    QElapsedTimer timer;
    timer.start();
    window().close();
    EXPECT_LT(timer.elapsed(), 20'000);
    EXPECT_EQ(window().unsaved(), QString());
    EXPECT_TRUE(QFile::exists(VelkHost::settingsFile()));
    EXPECT_FALSE(QFile::exists(VelkHost::settingsFile() + QStringLiteral(".lock")));
}

class KeptPreferences : public test::TestHost
{
protected:
    /// Begins with the kept preferences, as the program does when it starts.
    void start()
    {
        Velk::HostServices services = *Velk::host();
        services.preferences.clear();
        VelkHost::keepPreferences(services, file_);
        Velk::installHost(std::move(services));
    }

    static int displayType()
    {
        return *PreferenceEngine::getThePrefs().getPrefSet().get<int>(test::preference::progressDisplay);
    }

    const QString file_ = QString::fromStdString((folder() / U"kept.ini").utf8());
};

TEST_F(KeptPreferences, ComeBack)
{
    start();
    EXPECT_EQ(displayType(), test::displayType::barOnly);
    EXPECT_TRUE(PreferenceEngine::getThePrefs().getPrefSet().set(test::preference::progressDisplay,
                                                                 test::displayType::amounts));
    EXPECT_TRUE(PreferenceEngine::getThePrefs().getPrefSet().set(test::preference::lastManualUpdateFailed, true));
    start();
    EXPECT_EQ(displayType(), test::displayType::amounts);
    EXPECT_TRUE(*PreferenceEngine::getThePrefs().getPrefSet().get<bool>(test::preference::lastManualUpdateFailed));
}

TEST_F(KeptPreferences, AreTheDefaultsWhereTheFileHoldsSomethingElse)
{
    test::writeFile(folder() / U"kept.ini", "[preferences]\n236=17\n251=@ByteArray(x)\n");
    start();
    EXPECT_EQ(displayType(), test::displayType::barOnly);
}

}  // namespace
