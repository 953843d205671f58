#include "host/fixtures/PublishFixtures.h"

#include "support/QtProcesses.h"
#include "support/RuntimeFolder.h"

#include <gmock/gmock.h>

#include <QProcess>
#include <QProcessEnvironment>

#include <memory>

using testing::HasSubstr;

namespace {

QProcessEnvironment withoutScreen(const QString& locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.remove(QStringLiteral("LANGUAGE"));
    return environment;
}

/// The program, which cannot serve a folder that is not a site, and says so in its language.
class BrowserProgram : public testing::Test
{
protected:
    struct Run
    {
        int exitCode = 0;
        std::string errors;
    };

    Run run(const QStringList& options, const QString& locale = QStringLiteral("C"), const QString& site = {}) const
    {
        QProcess program;
        program.setProcessEnvironment(withoutScreen(locale));
        const QString home = QString::fromStdString(folder_.path().utf8());
        program.start(QStringLiteral(VELK_BROWSER_PROGRAM),
                      options + QStringList{QStringLiteral("--home"), home, QStringLiteral("--site"),
                                            site.isEmpty() ? home : site});
        test::waitForEnd(program);
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), program.readAllStandardError().toStdString()};
    }

private:
    test::RuntimeFolder runtime_;
    test::TemporaryFolder folder_;
};

TEST_F(BrowserProgram, TakesArgumentsAsTheyWereTyped)
{
    EXPECT_THAT(run({}, QStringLiteral("C"), QStringLiteral("[none, here]")).errors,
                HasSubstr("[none, here]: is not a published site"));
}

TEST_F(BrowserProgram, TakesNamesInEveryAlphabet)
{
    const std::string name = "K\u00FCche \u6905 \u03C0";
    EXPECT_THAT(run({}, QStringLiteral("C"), QString::fromStdString(name)).errors,
                HasSubstr(name + ": is not a published site"));
}

class LanguageOption : public BrowserProgram
{};

TEST_F(LanguageOption, IsEnglishWhereTheSystemSpeaksNoneOfTheLanguages)
{
    EXPECT_THAT(run({}).errors, HasSubstr("is not a published site"));
    EXPECT_THAT(run({}, QStringLiteral("fi_FI.UTF-8")).errors, HasSubstr("is not a published site"));
}

TEST_F(LanguageOption, ChoosesTheLanguage)
{
    const Run german = run({QStringLiteral("--language"), QStringLiteral("de")});
    EXPECT_EQ(german.exitCode, 1);
    EXPECT_THAT(german.errors, HasSubstr("Das ist kein veröffentlichter Bestand"));
    EXPECT_THAT(run({QStringLiteral("--language=fr")}).errors, HasSubstr("ce n’est pas un site publié"));
}

TEST_F(LanguageOption, GoesBeforeTheSystem)
{
    const Run english = run({QStringLiteral("--language"), QStringLiteral("en")}, QStringLiteral("de_DE.UTF-8"));
    EXPECT_THAT(english.errors, HasSubstr("is not a published site"));
}

TEST_F(LanguageOption, ListsTheLanguagesForAnUnknownOne)
{
    const Run unknown = run({QStringLiteral("--language"), QStringLiteral("xx")});
    EXPECT_NE(unknown.exitCode, 0);
    EXPECT_NE(unknown.exitCode, 1);
    EXPECT_THAT(unknown.errors, HasSubstr("--language: xx not in {de,en,fr}"));
}

#ifndef _WIN32  // where a variable of the environment is the user's language

TEST_F(LanguageOption, IsTheSystemsOtherwise)
{
    EXPECT_THAT(run({}, QStringLiteral("de_AT.UTF-8")).errors, HasSubstr("Das ist kein veröffentlichter Bestand"));
    EXPECT_THAT(run({}, QStringLiteral("fr_CA.UTF-8")).errors, HasSubstr("ce n’est pas un site publié"));
}

#endif

/// The program, started more than once on one installation.
class BrowserFiles : public testing::Test
{
protected:
    ~BrowserFiles() override
    {
        for (const auto& window : windows_) {
            window->kill();
            window->waitForFinished(test::processPatience);
        }
    }

    /// Makes a library in the folder where the programs are started.
    void makeLibrary(const std::u32string& name) const { test::writeCatalogFile(folder_ / name, "Tree"); }

    /// Starts the program, which is to open a window.
    QProcess& start(const QStringList& files)
    {
        windows_.push_back(program(files));
        test::waitForStart(*windows_.back());
        return *windows_.back();
    }

    /// Starts it where it has nothing to do but to hand over.
    void handOver(const QStringList& files) const
    {
        const std::unique_ptr<QProcess> second = program(files);
        test::waitForStart(*second);
        test::waitForEnd(*second);
        EXPECT_EQ(second->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(second->exitCode(), 0);
        EXPECT_EQ(second->readAllStandardOutput() + second->readAllStandardError(), QByteArray());
    }

    /// Waits until a window has imported the library.
    static void waitForImport(QProcess& window, const fileString& library)
    {
        test::repeatUntil([&] { return library.pathExists() || window.state() == QProcess::NotRunning; },
                          [&] { window.waitForFinished(10); });
        EXPECT_TRUE(library.pathExists()) << window.readAllStandardError().toStdString();
        EXPECT_EQ(window.state(), QProcess::Running);
    }

    fileString imported(const std::u32string& name) const { return folder_ / U"home" / U"user" / name; }

private:
    std::unique_ptr<QProcess> program(const QStringList& files) const
    {
        auto made = std::make_unique<QProcess>();
        made->setProcessEnvironment(withoutScreen(QStringLiteral("C")));
        made->setWorkingDirectory(QString::fromStdString(folder_.path().utf8()));
        made->start(QStringLiteral(VELK_BROWSER_PROGRAM),
                    QStringList{QStringLiteral("--home"), QStringLiteral("home")} + files);
        return made;
    }

    test::RuntimeFolder runtime_;
    test::TemporaryFolder folder_;
    std::vector<std::unique_ptr<QProcess>> windows_;
};

TEST_F(BrowserFiles, AreImportedByTheFirstWindow)
{
    makeLibrary(U"oak.calib");
    makeLibrary(U"[K\u00FCche] \u6905.calib");
    QProcess& window = start({QStringLiteral("oak.calib")});
    waitForImport(window, imported(U"oak.calib"));
    handOver({QString::fromUtf8("[K\u00FCche] \u6905.calib")});
    waitForImport(window, imported(U"[K\u00FCche] \u6905.calib"));
    handOver({});
    EXPECT_EQ(window.state(), QProcess::Running);
}

TEST_F(BrowserFiles, AreImportedByAWindowOfTheirOwnWhereTheFirstWasKilled)
{
    makeLibrary(U"oak.calib");
    makeLibrary(U"elm.calib");
    QProcess& first = start({QStringLiteral("oak.calib")});
    waitForImport(first, imported(U"oak.calib"));
    first.kill();
    ASSERT_TRUE(first.waitForFinished(test::processPatience));
    waitForImport(start({QStringLiteral("elm.calib")}), imported(U"elm.calib"));
}

}  // namespace
