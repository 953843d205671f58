#include "host/browser/BrowserTest.h"

#include "host/browser/filters/KindMenu.h"
#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/jobs/InstalledFiles.h"
#include "support/Eventually.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <shared_mutex>

using test::catalogFileBytes;
using test::furnitureCatalog;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;

namespace {

class ImportJob : public test::BrowserTest
{
protected:
    /// A packed library with a texture.
    fileString packed(const std::u32string& name, const std::string& prefix = "Chair ") const
    {
        return file(name, test::ZipBuilder()
                              .add("any name.calib", catalogFileBytes(furnitureCatalog(prefix)))
                              .add("oak.png", "oak")
                              .bytes());
    }

    fileString file(const std::u32string& name, const std::string& bytes) const
    {
        test::writeFileDeep(folder() / U"files" / name, bytes);
        return folder() / U"files" / name;
    }

    QStringList qtPaths(const std::vector<fileString>& files) const
    {
        QStringList list;
        for (const fileString& file : files)
            list.append(qtPath(file));
        return list;
    }

    void import(const std::vector<fileString>& files) { window().jobs().importFiles(qtPaths(files)); }
    void open(const std::vector<fileString>& files) { window().openFiles(qtPaths(files)); }

    void importAndWait(const std::vector<fileString>& files)
    {
        import(files);
        EXPECT_TRUE(window().jobs().isRunning());
        waitForJob();
    }

    /// Waits until the first library is unpacked and looked at.
    void waitUntilChecking()
    {
        auto* const panel = named<LibraryProgressPanel>("LibraryProgressPanel");
        ASSERT_NE(panel, nullptr);
        test::eventually([panel] {
            const auto labels = panel->findChildren<QLabel*>();
            return std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
                return label->text().startsWith(QStringLiteral("Checking"));
            });
        });
    }

    /// The text of the message box, which is then closed.
    std::string problem()
    {
        auto* const box = named<QMessageBox>("problemBox");
        if (box == nullptr)
            return "no problem was shown";
        const std::string text = box->text().toStdString();
        box->accept();
        return text;
    }

    void expectNothingLeft()
    {
        EXPECT_THAT(test::listFolder(folder() / U"user"), Each(StrEq("browser.ini")));  // the window's state
        EXPECT_THAT(test::listFolder(folder() / U"textures"), IsEmpty());
        EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
        EXPECT_EQ(model().rowCount(), 0);
        EXPECT_TRUE(action("importAction").isEnabled());
    }

    void answer(const char* button)
    {
        auto* const box = named<QMessageBox>("replaceQuestion");
        ASSERT_NE(box, nullptr);
        EXPECT_FALSE(action("importAction").isEnabled());
        QAbstractButton* const pressed = *button == '\0' ? box->button(QMessageBox::Cancel)
                                                         : box->findChild<QPushButton*>(QString::fromLatin1(button));
        ASSERT_NE(pressed, nullptr) << button;
        QTest::mouseClick(pressed, Qt::LeftButton);
    }

    std::string firstItem(const std::u32string& library)
    {
        return itemIndex(user(library), "chair#0").data().toString().toStdString();
    }
};

TEST_F(ImportJob, TakesThePackedLibraryThatTheDialogGives)
{
    openWindow();
    const fileString archive = packed(U"Küche.calibz");
    action("importAction").trigger();
    auto* const dialog = named<QFileDialog>("importDialog");
    ASSERT_NE(dialog, nullptr);
    dialog->selectFile(qtPath(archive));
    static_cast<QDialog*>(dialog)->accept();
    ASSERT_TRUE(window().jobs().isRunning());
    waitForJob();
    EXPECT_EQ(message(), "“Küche” was imported.");
    EXPECT_EQ(test::readFile(user(U"Küche.calib")), catalogFileBytes(furnitureCatalog("Chair ")));
    EXPECT_THAT(ZipUtils::getFilenamesInArchive(folder() / U"textures" / U"Küche.zip"),
                ElementsAre(fileString(std::string("oak.png"))));
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
    const QModelIndex shown = folderIndex(user(U"Küche.calib"), {QStringLiteral("Furniture")});
    EXPECT_EQ(tree().currentIndex(), shown);
    EXPECT_TRUE(tree().isExpanded(shown));
    EXPECT_TRUE(archive.pathExists());
}

TEST_F(ImportJob, SaysWhatHidesTheImportedLibrary)
{
    openWindow();
    using VelkHost::LibraryKind;
    window().shownLibraries()->kindMenu()->setHidden(
        {LibraryKind::Core, LibraryKind::Manufacturer, LibraryKind::Bonus, LibraryKind::User});
    importAndWait({packed(U"Oak.calibz")});
    EXPECT_EQ(message(), "“Oak” was imported; it is hidden by the choice of kinds.");
}

TEST_F(ImportJob, TakesABareLibraryAndOthersWithIt)
{
    openWindow();
    importAndWait({file(U"bare.CALIB", catalogFileBytes(furnitureCatalog("Bare "))), packed(U"packed.CALIBZ")});
    EXPECT_EQ(message(), "2 libraries were imported.");
    EXPECT_EQ(firstItem(U"bare.calib"), "Bare 100");
    EXPECT_EQ(firstItem(U"packed.calib"), "Chair 100");
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
}

TEST_F(ImportJob, AsksBeforeItReplaces)
{
    openWindow();
    importAndWait({packed(U"chairs.calibz")});
    tree().expand(folderIndex(user(U"chairs.calib"), {QStringLiteral("Furniture"), QStringLiteral("Seating")}));
    const fileString other = packed(U"chairs.calibz", "Armchair ");

    import({other});
    answer("");
    EXPECT_FALSE(window().jobs().isRunning());
    EXPECT_EQ(firstItem(U"chairs.calib"), "Chair 100");

    import({other});
    answer("replaceButton");
    waitForJob();
    EXPECT_EQ(message(), "“chairs” was imported.");
    EXPECT_EQ(firstItem(U"chairs.calib"), "Armchair 100");
    EXPECT_TRUE(tree().isExpanded(
        folderIndex(user(U"chairs.calib"), {QStringLiteral("Furniture"), QStringLiteral("Seating")})));
}

TEST_F(ImportJob, SkipsWhatIsThere)
{
    openWindow();
    importAndWait({packed(U"chairs.calibz")});
    import({packed(U"chairs.calibz", "Armchair "), packed(U"tables.calibz", "Table ")});
    answer("skipButton");
    waitForJob();
    EXPECT_EQ(message(), "“tables” was imported.");
    EXPECT_EQ(firstItem(U"chairs.calib"), "Chair 100");
    EXPECT_EQ(firstItem(U"tables.calib"), "Table 100");
}

TEST_F(ImportJob, NeverReplacesALibraryOfTheSameImport)
{
    openWindow();
    importAndWait({packed(U"chairs.calibz"), file(U"chairs.calib", catalogFileBytes(furnitureCatalog("Armchair ")))});
    EXPECT_THAT(problem(), HasSubstr("“chairs.calib” was not imported."));
    EXPECT_EQ(message(), "“chairs” was imported.");
    EXPECT_EQ(firstItem(U"chairs.calib"), "Chair 100");
}

// ---- What cannot be imported ---------------------------------------------------------------------

struct BadFile
{
    const char* name;
    std::u32string file;
    std::string bytes;
    std::string problem;
};

class ImportJobBadFile : public ImportJob, public testing::WithParamInterface<BadFile>
{};

TEST_P(ImportJobBadFile, LeavesNothingAndSaysWhy)
{
    openWindow();
    importAndWait({file(GetParam().file, GetParam().bytes)});
    const std::string text = problem();
    EXPECT_THAT(text, HasSubstr("“" + fileString(GetParam().file).utf8() + "” was not imported."));
    EXPECT_THAT(text, HasSubstr(GetParam().problem));
    EXPECT_EQ(message(), "Nothing was imported.");
    expectNothingLeft();
}

std::vector<BadFile> badFiles()
{
    const std::string catalog = catalogFileBytes(furnitureCatalog("Chair "));
    const std::string archive = test::ZipBuilder().add("a.calib", catalog).add("oak.png", "oak").bytes();
    const std::string damaged = "It is not a packed library, or it is damaged.";
    test::ZipItem wrongCrc;
    wrongCrc.name = "a.calib";
    wrongCrc.data = catalog;
    wrongCrc.crc = 1;
    return {
        {"Empty", U"x.calibz", "", damaged},
        {"Text", U"x.calibz", "<html>" + std::string(5'000, 'x'), damaged},
        {"CutOff", U"x.calibz", archive.substr(0, archive.size() - 100), damaged},
        {"WithoutLibrary", U"x.calibz", test::ZipBuilder().add("oak.png", "oak").bytes(),
         "Its catalog file is missing or damaged."},
        {"WrongChecksum", U"x.calibz", test::ZipBuilder().add(wrongCrc).add("oak.png", "oak").bytes(),
         "Its catalog file is missing or damaged."},
        {"NoDatabase", U"x.calibz", test::ZipBuilder().add("a.calib", "no database").add("oak.png", "oak").bytes(),
         "Its catalog file is not a library catalog."},
        {"CutOffDatabase", U"x.calib", catalog.substr(0, catalog.size() / 2), "Its catalog file is damaged: "},
#ifndef _WIN32  // where no such file can be made
        {"Device", U"con.calibz", archive, "Its name cannot be that of a library."},
        {"Drive", U"c:x.calibz", archive, "Its name cannot be that of a library."},
#endif
    };
}

INSTANTIATE_TEST_SUITE_P(Files, ImportJobBadFile, testing::ValuesIn(badFiles()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(ImportJob, SaysThatAFileIsGone)
{
    openWindow();
    importAndWait({folder() / U"gone.calibz"});
    EXPECT_THAT(problem(), HasSubstr("“gone.calibz” was not imported. " +
                                     (folder() / U"gone.calibz").humanReadableString() + ": does not exist"));
    expectNothingLeft();
}

TEST_F(ImportJob, SaysThatAFolderIsNoFile)
{
    openWindow();
    importAndWait({folder() / U"textures", folder() / U"textures" / U"below.calib", packed(U"chairs.calibz")});
    const std::string text = problem();
    EXPECT_THAT(text, HasSubstr("textures: is a folder, not a file"));
    EXPECT_THAT(text, HasSubstr("below.calib: does not exist"));
    EXPECT_EQ(message(), "“chairs” was imported.");
}

TEST_F(ImportJob, TellsTheFirstOfManyProblems)
{
    openWindow();
    std::vector<fileString> gone;
    for (int i = 10; i < 22; ++i)
        gone.push_back(folder() / fileString("gone" + std::to_string(i) + ".calibz"));
    importAndWait(gone);
    auto* const box = named<QMessageBox>("problemBox");
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->text().toStdString(), HasSubstr("gone19.calibz"));
    EXPECT_THAT(box->text().toStdString(), testing::Not(HasSubstr("gone20.calibz")));
    EXPECT_THAT(box->text().toStdString(), testing::EndsWith("\n\nThere were 2 more problems."));
    EXPECT_THAT(box->detailedText().toStdString(), HasSubstr("gone21.calibz"));
}

// ---- What has to wait ----------------------------------------------------------------------------

TEST_F(ImportJob, ImportsLaterWhatComesWhileAJobRuns)
{
    openWindow();
    std::shared_lock reading(VelkHost::installedFiles());
    import({packed(U"chairs.calibz")});
    open({packed(U"tables.calibz"), folder() / U"gone.calibz"});
    open({packed(U"tables.calibz"), packed(U"beds.calibz")});
    EXPECT_TRUE(window().jobs().isRunning());
    reading.unlock();
    waitForJob();
    EXPECT_EQ(message(), "2 libraries were imported.") << "the second job's";
    EXPECT_THAT(problem(), testing::StartsWith("“gone.calibz” was not imported."));
    EXPECT_THAT(test::listFolder(folder() / U"user"), ElementsAre("beds.calib", "chairs.calib", "tables.calib"));
}

TEST_F(ImportJob, ImportsLaterWhatComesWhileItAsks)
{
    openWindow();
    importAndWait({packed(U"chairs.calibz")});
    import({packed(U"chairs.calibz", "Armchair ")});
    open({packed(U"tables.calibz")});
    EXPECT_FALSE(window().jobs().isRunning());
    answer("");
    waitForJob();
    EXPECT_EQ(firstItem(U"chairs.calib"), "Chair 100");
    EXPECT_EQ(firstItem(U"tables.calib"), "Chair 100");
}

TEST_F(ImportJob, ImportsLaterWhatTheDialogGives)
{
    openWindow();
    std::shared_lock reading(VelkHost::installedFiles());
    action("importAction").trigger();
    auto* const dialog = named<QFileDialog>("importDialog");
    ASSERT_NE(dialog, nullptr);
    open({packed(U"chairs.calibz")});
    dialog->selectFile(qtPath(packed(U"tables.calibz")));
    static_cast<QDialog*>(dialog)->accept();
    reading.unlock();
    waitForJob();
    EXPECT_THAT(test::listFolder(folder() / U"user"), ElementsAre("chairs.calib", "tables.calib"));
}

TEST_F(ImportJob, AddsLaterProblemsToTheOpenBox)
{
    openWindow();
    importAndWait({folder() / U"gone.calibz"});
    importAndWait({folder() / U"lost.calibz"});
    EXPECT_EQ(window().findChildren<QMessageBox*>(QStringLiteral("problemBox")).size(), 1);
    const std::string text = problem();
    EXPECT_THAT(text, HasSubstr("gone.calibz"));
    EXPECT_THAT(text, HasSubstr("lost.calibz"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    importAndWait({folder() / U"away.calibz"});
    EXPECT_THAT(problem(), testing::Not(HasSubstr("gone.calibz"))) << "it was read";
}

TEST_F(ImportJob, MayBeAskedForSoManyFilesOnly)
{
    openWindow();
    EXPECT_TRUE(window().mayOpenFiles(10'000));
    EXPECT_FALSE(window().mayOpenFiles(10'001));
    std::shared_lock reading(VelkHost::installedFiles());
    import({packed(U"chairs.calibz")});
    open({packed(U"tables.calibz")});
    EXPECT_TRUE(window().mayOpenFiles(9'999));
    EXPECT_FALSE(window().mayOpenFiles(10'000));
    window().close();
    EXPECT_FALSE(window().mayOpenFiles(0)) << "it is closing";
    reading.unlock();
    test::eventually([this] { return !window().isVisible(); });
    EXPECT_FALSE(window().mayOpenFiles(0)) << "it is closed";
    waitForJob();
    EXPECT_FALSE(user(U"tables.calib").pathExists());
}

TEST_F(ImportJob, ImportsTheRestWhenOneIsDamaged)
{
    openWindow();
    importAndWait({file(U"x.calibz", "damaged"), packed(U"chairs.calibz")});
    EXPECT_THAT(problem(), HasSubstr("“x.calibz” was not imported."));
    EXPECT_EQ(message(), "“chairs” was imported.");
    EXPECT_THAT(test::listFolder(folder() / U"user"), ElementsAre("chairs.calib"));
}

TEST_F(ImportJob, LeavesNothingWhenTexturesHaveNoPlace)
{
    openWindow();
    test::writeFile(folder() / U"textures" / U"chairs.zip", "no archive");
    importAndWait({packed(U"chairs.calibz")});
    EXPECT_THAT(problem(), HasSubstr("“chairs.calibz” was not imported."));
    EXPECT_THAT(test::listFolder(folder() / U"user"), IsEmpty());
    EXPECT_EQ(test::readFile(folder() / U"textures" / U"chairs.zip"), "no archive");
    EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty());
}

// ---- Cancelling ----------------------------------------------------------------------------------

TEST_F(ImportJob, LeavesNothingWhenCancelledInTheMiddle)
{
    openWindow();
    std::shared_lock reading(VelkHost::installedFiles());  // the library cannot go to its place meanwhile
    import({packed(U"chairs.calibz"), packed(U"tables.calibz")});
    waitUntilChecking();
    QTest::mouseClick(named<QPushButton>("cancelButton"), Qt::LeftButton);
    reading.unlock();
    waitForJob();
    EXPECT_EQ(message(), "The import was cancelled.");
    EXPECT_EQ(named<QMessageBox>("problemBox"), nullptr);
    expectNothingLeft();
}

TEST_F(ImportJob, EndsWithTheWindow)
{
    openWindow();
    std::shared_lock reading(VelkHost::installedFiles());
    import({packed(U"chairs.calibz")});
    window().close();
    EXPECT_TRUE(window().isVisible());
    reading.unlock();
    waitForJob();
    EXPECT_FALSE(window().isVisible());
    expectNothingLeft();
}

TEST_F(ImportJob, DoesNotHoldUpAWindowThatIsClosed)
{
    openWindow();
    std::shared_lock reading(VelkHost::installedFiles());
    import({packed(U"chairs.calibz")});
    open({packed(U"tables.calibz")});
    waitUntilChecking();
    window().close();
    test::eventually([this] { return !window().isVisible(); });
    EXPECT_TRUE(window().jobs().isRunning());
    reading.unlock();
    waitForJob();
    expectNothingLeft();
}

}  // namespace
