#include "host/browser/language/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

// Outside any namespace, as the macro declares a function. The resources of a static library must be loaded explicitly.
static void loadResources()
{
    Q_INIT_RESOURCE(translations);
}

namespace VelkHost {
namespace {

const QLatin1String english("en");

/// "de" of "de-AT".
QString languageOf(const QString& locale)
{
    return locale.section(QLatin1Char('-'), 0, 0);
}

QString preferredLanguage()
{
    for (const QString& wanted : QLocale::system().uiLanguages())
        if (Translations::languages().contains(languageOf(wanted)))
            return languageOf(wanted);
    return english;
}

/// The language's locale, with the number formats of the system's country when the language is spoken there.
QLocale localeOf(const QString& language)
{
    const QLocale system = QLocale::system();
    const bool speaksIt = system.language() != QLocale::C && languageOf(system.bcp47Name()) == language;
    return speaksIt ? QLocale(system.name()) : QLocale(language);
}

QString folderOfQtsTexts()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}

}  // namespace

QStringList Translations::languages()
{
    return {QStringLiteral("de"), english, QStringLiteral("fr")};
}

Translations::Translations(const QString& language) : language_(language.isEmpty() ? preferredLanguage() : language)
{
    loadResources();
    const QLocale locale = localeOf(language_);
    QLocale::setDefault(locale);
    if (window_.load(QStringLiteral(":/translations/velk-browser_%1.qm").arg(language_)))
        QCoreApplication::installTranslator(&window_);
    // Qt's own texts are English without a file.
    if (language_ != english && qt_.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), folderOfQtsTexts()))
        QCoreApplication::installTranslator(&qt_);
}

Translations::~Translations()
{
    QCoreApplication::removeTranslator(&qt_);
    QCoreApplication::removeTranslator(&window_);
    QLocale::setDefault(QLocale(english));
}

}  // namespace VelkHost
