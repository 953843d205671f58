#include "support/QtProcesses.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <QProcess>
#include <QProcessEnvironment>

using testing::HasSubstr;

namespace {

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
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("LC_ALL"), locale);
        environment.remove(QStringLiteral("LANGUAGE"));
        QProcess program;
        program.setProcessEnvironment(environment);
        const QString home = QString::fromStdString(folder_.path().utf8());
        program.start(QStringLiteral(VELK_BROWSER_PROGRAM),
                      options + QStringList{QStringLiteral("--home"), home, QStringLiteral("--site"),
                                            site.isEmpty() ? home : site});
        test::waitForEnd(program);
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), program.readAllStandardError().toStdString()};
    }

private:
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

}  // namespace
