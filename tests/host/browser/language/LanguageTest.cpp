#include "host/browser/BrowserTest.h"

#include "host/browser/filters/FilterEditor.h"
#include "host/browser/language/HostTexts.h"
#include "host/browser/language/Reasons.h"
#include "host/browser/language/Translations.h"
#include "host/browser/manufacturers/ManufacturerEditor.h"
#include "host/browser/search/SearchPane.h"
#include "host/installation/DataError.h"
#include "host/service/ServiceError.h"
#include "host/support/FileError.h"
#include "support/Eventually.h"
#include "support/Names.h"
#include "support/Numbers.h"

#include <VelkCommon/Text/StringUtils.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>

#include <initializer_list>
#include <map>
#include <new>

using testing::ElementsAre;
using testing::HasSubstr;
using VelkHost::Catalog;
using VelkHost::FileError;
using VelkHost::Folder;

namespace {

/// A window in a language.
class SpeakingWindow : public test::BrowserTest
{
protected:
    void speak(const char* language)
    {
        translations_ = std::make_unique<VelkHost::Translations>(QString::fromLatin1(language));
        Velk::HostServices services = this->services();
        VelkHost::translateHost(services);
        Velk::installHost(std::move(services));
    }

    ~SpeakingWindow() override { closeWindow(); }

    /// The window with two chairs, one of them with a file that cannot be read beside it.
    void installChairs()
    {
        Catalog catalog;
        catalog.id = "seats";
        catalog.name = "Sitze";
        catalog.folders = {{Folder::noParent, "Büro"}};
        catalog.items = {
            {"1", 0, "Stuhl", "", "", {}}, {"2", 0, "Stuhl rot", "", "", {}}, {"3", 0, "Regal", "", "", {}}};
        test::writeFile(core(U"seats.calib"), test::catalogFileBytes(catalog));
    }

    std::string labelText(const char* name) { return named<QLabel>(name)->text().toStdString(); }

    void search(const char* text)
    {
        auto* const box = named<QLineEdit>("searchBox");
        box->clear();
        box->setText(QString::fromLatin1(text));
        test::eventually([this] { return test::hasSearched(window()); });
    }

    /// The text without the marks of its keys.
    static std::string plain(QString text) { return text.remove(u'&').toStdString(); }

    std::vector<std::string> menuTitles()
    {
        std::vector<std::string> titles;
        for (const QAction* const action : window().menuBar()->actions())
            titles.push_back(plain(action->text()));
        return titles;
    }

private:
    std::unique_ptr<VelkHost::Translations> translations_;
};

struct Spoken
{
    const char* language;
    std::vector<std::string> menus;
    const char* title;
    const char* emptyState;
    const char* noFilter;
    const char* oneHit;
    const char* twoHits;
    const char* group;
    const char* explanation;
    const char* failure;
};

class WindowLanguage : public SpeakingWindow, public testing::WithParamInterface<Spoken>
{
protected:
    WindowLanguage() { speak(GetParam().language); }
};

TEST_P(WindowLanguage, IsThatOfMenusAndEmptyState)
{
    openWindow();
    EXPECT_EQ(menuTitles(), GetParam().menus);
    EXPECT_EQ(window().windowTitle().toStdString(), GetParam().title);
    EXPECT_THAT(labelText("emptyState"), HasSubstr(GetParam().emptyState));
    test::eventually([&] { return named<QComboBox>("filterBox")->count() == 1; });
    EXPECT_EQ(named<QComboBox>("filterBox")->itemText(0).toStdString(), GetParam().noFilter);
}

TEST_P(WindowLanguage, IsThatOfTheSearch)
{
    installChairs();
    openWindow();
    search("regal");
    EXPECT_EQ(labelText("searchSummary"), GetParam().oneHit);
    search("stuhl");
    EXPECT_EQ(labelText("searchSummary"), GetParam().twoHits);
    EXPECT_EQ(window().searchPane()->model().index(0, 0).data().toString().toStdString(), GetParam().group);
    search("(stuhl OR regal) -rot");
    EXPECT_EQ(labelText("searchExplanation"), GetParam().explanation);
}

TEST_P(WindowLanguage, IsThatOfFailures)
{
    test::writeFile(core(U"broken.calib"), "nothing");
    openWindow();
    EXPECT_EQ(message(), GetParam().failure);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, WindowLanguage,
    testing::Values(
        Spoken{
            "de",
            {"Datei", "Bearbeiten", "Ansicht", "Filter", "Hersteller"},
            "Bibliotheken",
            "Es sind keine Bibliotheken installiert.",
            "Kein Filter",
            "1 Treffer",
            "2 Treffer",
            "Objekte mit diesem Namen",
            "Gefunden wird, was eine dieser 2 Bedingungen erfüllt:\n1. alle von: \"stuhl\"\n    keiner von: \"rot\"\n"
            "2. alle von: \"regal\"\n    keiner von: \"rot\"",
            "„broken“ kann nicht gelesen werden: Die Datei ist kein Bibliothekskatalog"},
        Spoken{"fr",
               {"Fichier", "Édition", "Affichage", "Filtres", "Fabricants"},
               "Bibliothèques",
               "Aucune bibliothèque n’est installée.",
               "Aucun filtre",
               "1 résultat",
               "2 résultats",
               "Objets portant ce nom",
               "Est trouvé ce qui remplit l’une de ces 2 conditions\u00A0:\n1. tous ces termes\u00A0: \"stuhl\"\n"
               "    aucun de ceux-ci\u00A0: \"rot\"\n2. tous ces termes\u00A0: \"regal\"\n"
               "    aucun de ceux-ci\u00A0: \"rot\"",
               "Impossible de lire «\u00A0broken\u00A0»\u00A0: le fichier n’est pas un catalogue de bibliothèque"}),
    [](const auto& info) { return std::string(info.param.language); });

// ---- Keys ----------------------------------------------------------------------------------------

class WindowKeys : public SpeakingWindow, public testing::WithParamInterface<const char*>
{
protected:
    /// Fails the test when two texts that are seen at the same time have the same key.
    static void expectDifferent(const QStringList& texts, const std::string& where)
    {
        std::map<QString, QString> taken;
        for (const QString& text : texts) {
            const QString key = QKeySequence::mnemonic(text).toString(QKeySequence::PortableText);
            const bool isFree = key.isEmpty() || taken.emplace(key, text).second;
            EXPECT_TRUE(isFree) << where << ": " << text.toStdString() << " has the key of "
                                << taken[key].toStdString();
        }
    }
};

TEST_P(WindowKeys, AreDifferentInEachMenuAndInTheWindow)
{
    speak(GetParam());
    openWindow();
    QStringList inWindow;
    for (const QAction* const action : window().menuBar()->actions())
        inWindow.append(action->text());
    for (const QAbstractButton* const button : window().findChildren<QAbstractButton*>())
        if (!inWindow.contains(button->text()))  // a page and a strip have the same button
            inWindow.append(button->text());
    inWindow.append(action("cancelAction").text());  // the button beside the progress has it, too
    expectDifferent(inWindow, "window");
    for (const QMenu* const menu : window().findChildren<QMenu*>()) {
        QStringList texts;
        for (const QAction* const action : menu->actions()) {
            texts.append(action->text());
            EXPECT_TRUE(action->isSeparator() || !QKeySequence::mnemonic(action->text()).isEmpty())
                << action->text().toStdString();
        }
        expectDifferent(texts, menu->title().toStdString());
    }
}

TEST_P(WindowKeys, AreDifferentInDialogs)
{
    speak(GetParam());
    VelkHost::ManufacturerStore store;
    const VelkHost::FilterEditor filters(VelkHost::FilterState(), {});
    const VelkHost::ManufacturerEditor card(store, VelkHost::ManufacturerCard());
    for (const QDialog* const dialog : std::initializer_list<const QDialog*>{&filters, &card}) {
        QStringList texts;
        for (const QLabel* const label : dialog->findChildren<QLabel*>())
            if (label->buddy() != nullptr)
                texts.append(label->text());
        for (const QAbstractButton* const button : dialog->findChildren<QAbstractButton*>())
            texts.append(button->text());
        EXPECT_GE(texts.size(), 8);
        expectDifferent(texts, dialog->objectName().toStdString());
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, WindowKeys, testing::Values("de", "en", "fr"),
                         [](const auto& info) { return std::string(info.param); });

// ---- Numbers and the library's texts -------------------------------------------------------------

class LanguageTexts : public SpeakingWindow
{};

TEST_F(LanguageTexts, AreTheLibrarysToo)
{
    speak("de");
    EXPECT_EQ(StringUtils::loadString(test::textNumber::downloading), "%1% wird heruntergeladen");
    EXPECT_EQ(StringUtils::loadString(test::textNumber::checkingCatalogs), "Kataloge werden geprüft");
    EXPECT_EQ(StringUtils::loadString(test::textNumber::unknown), "");
    speak("fr");
    EXPECT_EQ(StringUtils::loadString(test::textNumber::checkingCatalogs), "Vérification des catalogues");
}

TEST_F(LanguageTexts, WriteNumbersAsTheLanguageDoes)
{
    speak("de");
    EXPECT_EQ(QLocale().toString(1234567), QStringLiteral("1.234.567"));
    EXPECT_EQ(Velk::host()->numberFormat.thousandsSeparator, ".");
    EXPECT_EQ(Velk::host()->numberFormat.decimalPoint, ",");
    EXPECT_EQ(VelkHost::SearchPane::tr("%Ln hit(s)", nullptr, 1'234), QStringLiteral("1.234 Treffer"));
}

TEST_F(LanguageTexts, AreEnglishAfterwards)
{
    {
        const VelkHost::Translations french(QStringLiteral("fr"));
        EXPECT_EQ(french.language(), QStringLiteral("fr"));
        EXPECT_EQ(VelkHost::SearchPane::tr("Search syntax"), QStringLiteral("Syntaxe de recherche"));
    }
    EXPECT_EQ(VelkHost::SearchPane::tr("Search syntax"), QStringLiteral("Search syntax"));
    EXPECT_EQ(QLocale().language(), QLocale::English);
}

// ---- Reasons -------------------------------------------------------------------------------------

class ReasonInGerman : public SpeakingWindow
{
protected:
    ReasonInGerman() { speak("de"); }

    static std::string told(const std::exception& error) { return VelkHost::failureText(error).toStdString(); }
};

TEST_F(ReasonInGerman, HasItsPartsInTheirPlaces)
{
    EXPECT_EQ(told(FileError(fileString(std::string("/a.calib")),
                             {"is damaged: it is cut off after %1 of %2 bytes",
                              {VelkHost::Reason::amount(1'000), VelkHost::Reason::amount(20'000)}})),
              test::shown("/a.calib") + ": Die Datei ist beschädigt: Sie bricht nach 1.000 von 20.000 Bytes ab");
}

TEST_F(ReasonInGerman, NamesTheAddressOfAService)
{
    EXPECT_EQ(told(VelkHost::ServiceError("127.0.0.1:80", "cannot be listened on; is another program using the port?")),
              "127.0.0.1:80: Auf dieser Adresse kann nicht gelauscht werden; benutzt ein anderes Programm den Port?");
}

TEST_F(ReasonInGerman, TranslatesPartsThatAreReasons)
{
    EXPECT_EQ(VelkHost::translated({"%1; repair it, or move it away", {{"is damaged: %1", {"a text is missing"}}}}),
              QStringLiteral("Die Datei ist beschädigt: Ein Text fehlt; reparieren oder verschieben Sie die Datei"));
}

TEST_F(ReasonInGerman, TakesAPartForWhatItIs)
{
    EXPECT_EQ(told(VelkHost::DataError(VelkHost::Reason("\"%1\" is not a web address", {"%1 %2"}))),
              "„%1 %2“ ist keine Internetadresse");
}

TEST_F(ReasonInGerman, LeavesOutWhatATransferSays)
{
    EXPECT_EQ(told(VelkHost::TransferError("http://a.example/", "Could not resolve host")),
              "http://a.example/: nicht abrufbar");
}

TEST_F(ReasonInGerman, KnowsLackOfMemoryAndKeepsOtherTexts)
{
    EXPECT_EQ(told(std::bad_alloc()), "Der Arbeitsspeicher reicht nicht aus");
    EXPECT_EQ(told(std::runtime_error("100 %")), "100 %");
}

TEST(Reason, IsWholeInEnglish)
{
    using VelkHost::Reason;
    EXPECT_EQ(Reason("100 % of %1").english(), "100 % of %1");
    EXPECT_EQ(Reason("%2 before %1, not %3", {"a", Reason("%1!", {"%1"})}).english(), "%1! before a, not %3");
    EXPECT_EQ(Reason("ends in %", {"a"}).english(), "ends in %");
    EXPECT_EQ(Reason("%1 bytes", {Reason::amount(5'000)}).english(), "5000 bytes");
}

}  // namespace
