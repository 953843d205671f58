#include "TranslationFile.h"

#include "host/browser/language/HostTexts.h"
#include "host/browser/language/Translations.h"
#include "support/QtProcesses.h"
#include "support/TestHost.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/EnglishTexts.h>
#include <VelkCommon/Text/StringConvert.h>

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>

using test::TranslatedText;
using test::TranslatedTexts;

namespace {

/// The placeholders in a text, sorted: "%1", "%Ln", "%1%".
QStringList placeholders(const QString& text)
{
    static const QRegularExpression one(QStringLiteral("%(L?(n|[0-9]+%?)|%)"));
    QStringList found;
    for (auto match = one.globalMatch(text); match.hasNext();)
        found.append(match.next().captured());
    found.sort();
    return found;
}

QString::size_type mnemonics(const QString& text)
{
    static const QRegularExpression one(QStringLiteral("&[^&\\s]"));
    return text.count(one);
}

std::string shown(const std::pair<QString, QString>& key)
{
    return (key.first + QStringLiteral(": ") + key.second).toStdString();
}

class TranslationFile : public testing::TestWithParam<const char*>
{
protected:
    QString language() const { return QString::fromLatin1(GetParam()); }
    TranslatedTexts texts() const { return test::readTranslations(test::translationFile(language())); }
};

TEST_P(TranslationFile, IsComplete)
{
    const TranslatedTexts all = texts();
    EXPECT_FALSE(all.empty());
    for (const auto& [key, text] : all) {
        EXPECT_TRUE(text.isFinished) << shown(key);
        EXPECT_EQ(text.translations.size(), text.hasPlural ? 2 : 1) << shown(key);
        for (const QString& translation : text.translations)
            EXPECT_FALSE(translation.trimmed().isEmpty()) << shown(key);
    }
}

// In the singular the number may be a word, or be left out.
TEST_P(TranslationFile, KeepsPlaceholders)
{
    for (const auto& [key, text] : texts()) {
        const QStringList wanted = placeholders(key.second);
        QStringList withoutNumber = wanted;
        withoutNumber.removeAll(QStringLiteral("%Ln"));
        for (int form = 0; form < text.translations.size(); ++form) {
            const QStringList found = placeholders(text.translations[form]);
            const bool isSingular = text.hasPlural && form == 0;
            EXPECT_TRUE(found == wanted || (isSingular && found == withoutNumber)) << shown(key);
        }
    }
}

TEST_P(TranslationFile, KeepsKeys)
{
    for (const auto& [key, text] : texts())
        for (const QString& translation : text.translations)
            EXPECT_EQ(mnemonics(translation), mnemonics(key.second)) << shown(key);
}

// What people type and file name patterns are not translated.
TEST_P(TranslationFile, KeepsOperatorsAndFileNames)
{
    static const QRegularExpression word(QStringLiteral("--service URL|\\bOR\\b|\\bNOT\\b|\\*(\\.[a-z]+)?|\\.calibz"));
    const auto words = [](const QString& text) {
        QStringList found;
        for (auto match = word.globalMatch(text); match.hasNext();)
            found.append(match.next().captured());
        return found;
    };
    for (const auto& [key, text] : texts())
        for (const QString& translation : text.translations)
            EXPECT_EQ(words(translation), words(key.second)) << shown(key);
}

/// Collects the texts from the sources into a copy of the translations, which must then have no new and no old ones.
TEST_P(TranslationFile, HasTheTextsOfTheSources)
{
    const test::TemporaryFolder folder;
    const QString copy = QString::fromStdString((folder / U"copy.ts").utf8());
    ASSERT_TRUE(QFile::copy(test::translationFile(language()), copy));
    QStringList arguments{QStringLiteral("-silent"),
                          QStringLiteral("-no-obsolete"),
                          QStringLiteral("-locations"),
                          QStringLiteral("none"),
                          QStringLiteral("-I"),
                          test::sourcePath({}),
                          test::sourcePath(QStringLiteral("host/browser")),
                          QStringLiteral("-ts"),
                          copy};
    if (language() == QLatin1String("en"))
        arguments.append(QStringLiteral("-pluralonly"));
    QProcess lupdate;
    lupdate.start(QStringLiteral(VELK_LUPDATE), arguments);
    test::waitForEnd(lupdate);
    ASSERT_EQ(lupdate.exitCode(), 0) << lupdate.readAllStandardError().toStdString();
    const TranslatedTexts known = texts();
    const TranslatedTexts found = test::readTranslations(copy);
    for (const auto& [key, text] : found)
        EXPECT_TRUE(known.contains(key)) << "not translated yet, see docs/browser.md: " << shown(key);
    for (const auto& [key, text] : known)
        EXPECT_TRUE(found.contains(key)) << "no longer in the window: " << shown(key);
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationFile, testing::Values("de", "en", "fr"),
                         [](const auto& info) { return std::string(info.param); });

TEST(TranslationFiles, AreThoseOfTheLanguages)
{
    QStringList languages;
    for (const QFileInfo& file :
         QDir(test::sourcePath(QStringLiteral("host/browser/translations"))).entryInfoList({QStringLiteral("*.ts")}))
        languages.append(file.completeBaseName().section(u'_', 1));
    languages.sort();
    EXPECT_EQ(languages, VelkHost::Translations::languages());
}

// A reason's translation is found by its English text.
TEST(TranslationFiles, HaveTheReasonsThatThePartsOfTheHostGive)
{
    QString sources;
    for (const char* folder : {"host/catalog", "host/installation", "host/service", "host/support", "host/browser"}) {
        QDirIterator files(test::sourcePath(QString::fromLatin1(folder)), {QStringLiteral("*.cpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        ASSERT_TRUE(files.hasNext()) << folder;
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.fileName().endsWith(QStringLiteral("Reasons.cpp")))
                continue;
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            sources += QString::fromUtf8(file.readAll());
        }
    }
    const QStringList fromDatabases{QStringLiteral("database disk image is malformed"),
                                    QStringLiteral("file is not a database"), QStringLiteral("string or blob too big"),
                                    QStringLiteral("database is locked"), QStringLiteral("disk I/O error")};
    const QStringList ofTheWindow{QStringLiteral("there is too little memory"),
                                  QStringLiteral("%1: cannot be fetched")};
    for (const auto& [key, text] : test::readTranslations(test::translationFile(QStringLiteral("de")))) {
        if (key.first != QLatin1String("Reason") || fromDatabases.contains(key.second) ||
            ofTheWindow.contains(key.second))
            continue;
        const QString literal = u'"' + QString(key.second).replace(u'"', QStringLiteral("\\\"")) + u'"';
        EXPECT_TRUE(sources.contains(literal)) << literal.toStdString();
    }
}

TEST(TranslationFiles, HaveEveryTextOfTheLibrary)
{
    const TranslatedTexts texts = test::readTranslations(test::translationFile(QStringLiteral("fr")));
    std::ptrdiff_t count = 0;
    const auto check = [&](long first, long last) {
        for (long id = first; id <= last; ++id)
            if (const auto english = Velk::englishText(id)) {
                ++count;
                EXPECT_TRUE(texts.contains({QStringLiteral("Library"), QString::fromStdString(std::string(*english))}))
                    << *english;
            }
    };
    check(0, 20'000);
    check(272'032'000, 272'033'000);
    const auto known = std::count_if(texts.begin(), texts.end(),
                                     [](const auto& entry) { return entry.first.first == QLatin1String("Library"); });
    EXPECT_EQ(count, known);
}

}  // namespace
