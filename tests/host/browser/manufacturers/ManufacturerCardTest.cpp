#include "ManufacturerWindow.h"

#include "host/browser/LabelPicture.h"
#include "host/browser/manufacturers/ManufacturerBook.h"

#include <QDesktopServices>
#include <QPixmap>
#include <QTest>
#include <QTreeView>
#include <QUrl>

#ifndef _WIN32
#include <unistd.h>
#endif

using testing::HasSubstr;
using VelkHost::mailAddress;
using VelkHost::ManufacturerBook;
using VelkHost::ManufacturerCard;
using VelkHost::webAddress;

namespace {

// ---- Which manufacturer made an item -------------------------------------------------------------

struct ManufacturerCase
{
    const char* name;
    const char* keywords;
    const char* library;
    long id;  ///< 0 for no manufacturer
};

void PrintTo(const ManufacturerCase& row, std::ostream* stream)
{
    *stream << row.name;
}

class ManufacturerOfItem : public testing::TestWithParam<ManufacturerCase>
{};

TEST_P(ManufacturerOfItem, IsFoundByName)
{
    const auto card = [](long id, const char* name, bool deleted = false) {
        ManufacturerCard made;
        made.id = id;
        made.name = QString::fromUtf8(name);
        made.deleted = deleted;
        return made;
    };
    const ManufacturerBook book(
        {card(1, "Acme Doors", true), card(2, "Acme Doors"), card(9, "Acme Doors"), card(3, "Oak"),
         card(4, "Doe, Jane"), card(5, ""), card(6, "T\u00FCr"), card(7, "Gone", true)},
        {});
    VelkHost::Catalog library;
    library.name = GetParam().library;
    VelkHost::Item item;
    item.keywords = GetParam().keywords;
    const ManufacturerCard* const manufacturer = book.manufacturerOf(library, item);
    EXPECT_EQ(manufacturer == nullptr ? 0 : manufacturer->id, GetParam().id);
}

constexpr ManufacturerCase manufacturerCases[] = {{"LiveOneOfEqualNames", "acme doors", "", 2},
                                                  {"LastKeyword", "Oak, Acme Doors", "", 2},
                                                  {"LastKeywordThatIsAManufacturer", "Acme Doors, Oak, red", "", 3},
                                                  {"NotAPartOfAKeyword", "Acme Doors Ltd, Oaks", "", 0},
                                                  {"NameWithAComma", "red, Doe, Jane", "", 4},
                                                  {"HalfOfANameWithAComma", "red, Jane", "", 0},
                                                  {"OtherCase", "T\u00DCR", "", 6},
                                                  {"Withdrawn", "Gone", "", 7},
                                                  {"LibraryName", "red", "ACME  doors", 2},
                                                  {"LibraryNameWithAComma", "", "Doe, Jane", 4},
                                                  {"KeywordBeforeLibrary", "Oak", "Acme Doors", 3},
                                                  {"Nobody", "red, green", "Things", 0},
                                                  {"Nothing", "", "", 0}};

INSTANTIATE_TEST_SUITE_P(Items, ManufacturerOfItem, testing::ValuesIn(manufacturerCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- Addresses -----------------------------------------------------------------------------------

struct AddressCase
{
    const char* name;
    const char* text;
    const char* web;   ///< empty for none
    const char* mail;  ///< empty for none
};

void PrintTo(const AddressCase& row, std::ostream* stream)
{
    *stream << row.name;
}

class CardAddress : public testing::TestWithParam<AddressCase>
{};

TEST_P(CardAddress, LeadsToTheWebOrToMailOnly)
{
    const QString text = QString::fromUtf8(GetParam().text);
    EXPECT_EQ(webAddress(text).toEncoded().toStdString(), GetParam().web);
    EXPECT_EQ(mailAddress(text).toEncoded().toStdString(), GetParam().mail);
}

constexpr AddressCase addressCases[] = {{"Http", "http://acme.example/a?b=c", "http://acme.example/a?b=c", ""},
                                        {"Https", " HTTPS://acme.example ", "https://acme.example", ""},
                                        {"File", "file:///etc/passwd", "", ""},
                                        {"Script", "javascript:alert(1)", "", ""},
                                        {"OtherScheme", "ftp://acme.example", "", ""},
                                        {"NoScheme", "www.acme.example", "", ""},
                                        {"NoHost", "https:///x", "", ""},
                                        {"NoAddress", "https://a b", "", ""},
                                        {"Mail", "sales@acme.example", "", "mailto:sales@acme.example"},
                                        {"MailWithHeaders", "sales@acme.example?bcc=x@y", "", ""},
                                        {"MailWithPercent", "a%0Ab@acme.example", "", "mailto:a%250Ab@acme.example"},
                                        {"TwoMails", "a@b.example,c@d.example", "", ""},
                                        {"MailWithBlank", "Ask a@b.example", "", ""},
                                        {"Empty", "", "", ""}};

INSTANTIATE_TEST_SUITE_P(Texts, CardAddress, testing::ValuesIn(addressCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct ServiceCase
{
    const char* name;
    const char* service;
    const char* data;
    const char* logos;
};

void PrintTo(const ServiceCase& row, std::ostream* stream)
{
    *stream << row.name;
}

class ServiceOfManufacturers : public testing::TestWithParam<ServiceCase>
{};

TEST_P(ServiceOfManufacturers, LiesBesideTheCatalogs)
{
    const VelkHost::ManufacturerAddresses addresses = VelkHost::manufacturerAddresses(GetParam().service);
    EXPECT_EQ(addresses.data, GetParam().data);
    EXPECT_EQ(addresses.logos, GetParam().logos);
}

constexpr ServiceCase serviceCases[] = {
    {"Root", "http://127.0.0.1:8080/", "http://127.0.0.1:8080/manufacturers", "http://127.0.0.1:8080/logo?v=1"},
    {"Bare", "https://content.example", "https://content.example/manufacturers", "https://content.example/logo?v=1"},
    {"Endpoint", "https://content.example/catalog?v=1", "https://content.example/manufacturers",
     "https://content.example/logo?v=1"},
    {"Folder", "https://a.example/velk/", "https://a.example/velk/manufacturers", "https://a.example/velk/logo?v=1"}};

INSTANTIATE_TEST_SUITE_P(Services, ServiceOfManufacturers, testing::ValuesIn(serviceCases),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- The card in the window ----------------------------------------------------------------------

using ManufacturerCard = test::ManufacturerWindow;

TEST_F(ManufacturerCard, ShowsWhoMadeTheItem)
{
    VelkHost::editDefaultText("Ask <b>us</b>");
    haveCard(7, {{"name", "Acme <i>Doors"},
                 {"phone", "555 0123"},
                 {"fax", "default"},
                 {"email", "sales@acme.example"},
                 {"url", "https://acme.example/?a=1&b=2"}});
    haveCard(8, {{"name", "Acme Doors"}, {"phone", "555 0123"}, {"fax", "default"}, {"email", "default"}});
    EXPECT_TRUE(paneOf(0).isVisible());
    EXPECT_EQ(shownText("manufacturerName"), "Acme Doors");
    EXPECT_EQ(shownText("manufacturerPhone"), "555 0123");
    EXPECT_EQ(shownText("manufacturerFax"), "Ask <b>us</b>");
    EXPECT_EQ(find<QLabel>("manufacturerFax")->textFormat(), Qt::PlainText);
    EXPECT_EQ(shownText("manufacturerEmail"), "Ask <b>us</b>");
    EXPECT_EQ(find<QLabel>("manufacturerEmail")->textFormat(), Qt::PlainText) << "no address, so no link";
    EXPECT_EQ(shownText("manufacturerUrl"), std::nullopt);
    EXPECT_EQ(shownText("manufacturerWithdrawn"), std::nullopt);
    EXPECT_EQ(find<QLabel>("manufacturerName")->textFormat(), Qt::PlainText);
}

TEST_F(ManufacturerCard, IsHiddenForOthersAndForFolders)
{
    haveCard(7, {{"name", "Acme Doors"}});
    EXPECT_FALSE(paneOf(1).isVisible());
    select("Doors", 0);
    EXPECT_TRUE(pane().isVisible());
    window().tree()->setCurrentIndex(window().tree()->currentIndex().parent());
    EXPECT_FALSE(pane().isVisible());
}

TEST_F(ManufacturerCard, FollowsTheSelection)
{
    haveCard(7, {{"name", "Acme Doors"}});
    haveCard(8, {{"name", "Other, Manufacturer"}, {"fax", "1"}}, true);
    paneOf(0);
    EXPECT_EQ(shownText("manufacturerName"), "Acme Doors");
    select("Doors", 2);
    EXPECT_EQ(shownText("manufacturerName"), "Other, Manufacturer");
    EXPECT_EQ(shownText("manufacturerWithdrawn"), "This manufacturer was withdrawn.");
}

/// Catches the addresses that would be opened in a browser or a mail program.
class OpenedLinks : public QObject
{
    Q_OBJECT

public:
    OpenedLinks()
    {
        for (const char* scheme : {"https", "mailto"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "take");
    }
    ~OpenedLinks() override
    {
        for (const char* scheme : {"https", "mailto"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }

    std::vector<std::string> links;

public Q_SLOTS:
    void take(const QUrl& url) { links.push_back(url.toEncoded().toStdString()); }
};

TEST_F(ManufacturerCard, OpensItsLinks)
{
    haveCard(7, {{"name", "Acme Doors"}, {"email", "sales@acme.example"}, {"url", "https://acme.example/?a=1&b=2"}});
    paneOf(0);
    OpenedLinks opened;
    for (const char* link : {"manufacturerEmail", "manufacturerUrl"}) {
        auto* const label = find<QLabel>(link);
        EXPECT_TRUE(label->textInteractionFlags().testFlag(Qt::LinksAccessibleByKeyboard));
        label->setFocus();
        QTest::keyClick(label, Qt::Key_Tab);
        QTest::mouseClick(label, Qt::LeftButton, Qt::NoModifier, QPoint(12, label->height() / 2));
    }
    EXPECT_THAT(opened.links, testing::ElementsAre("mailto:sales@acme.example", "https://acme.example/?a=1&b=2"));
}

TEST_F(ManufacturerCard, HasNoLinkToAnythingElse)
{
    haveCard(7, {{"name", "Acme Doors"}, {"url", "javascript:alert(1)"}});
    paneOf(0);
    EXPECT_EQ(shownText("manufacturerUrl"), "javascript:alert(1)");
    EXPECT_EQ(find<QLabel>("manufacturerUrl")->textFormat(), Qt::PlainText);
}

TEST_F(ManufacturerCard, SaysThatTheDataFileIsDamaged)
{
    test::writeFile(data(U"manufacturer_data.json"), R"({"Manufacturer_1": 1})");
    EXPECT_FALSE(paneOf(0).isVisible());
    EXPECT_THAT(status().toStdString(), HasSubstr("The manufacturers cannot be read: "));
}

// ---- Logos ---------------------------------------------------------------------------------------

class ManufacturerLogoShown : public test::ManufacturerWindow
{
protected:
    /// The logo's size on the screen; empty when none is shown.
    QSize logoOf(const std::string& name)
    {
        haveCard(7, {{"name", "Acme Doors"}, {"logo", name}});
        paneOf(0);
        const auto* const label = find<QLabel>("manufacturerLogo");
        return label->isVisible() ? test::labelPicture(*label).size() : QSize();
    }
};

TEST_F(ManufacturerLogoShown, InItsSizeWhenSmall)
{
    writeLogo(U"acme.png", 40, 30);
    EXPECT_EQ(logoOf("acme.png"), QSize(40, 30));
}

TEST_F(ManufacturerLogoShown, BoundedWhenLarge)
{
    writeLogo(U"acme.png", 1600, 320);
    EXPECT_EQ(logoOf("acme.png"), QSize(160, 32));
}

TEST_F(ManufacturerLogoShown, NotWhenEnormous)
{
    writeLogo(U"acme.png", 4097, 1);
    EXPECT_EQ(logoOf("acme.png"), QSize());
}

TEST_F(ManufacturerLogoShown, NotWhenItIsNotAPicture)
{
    test::writeFile(data(U"acme.png"), test::png("cut off"));
    EXPECT_EQ(logoOf("acme.png"), QSize());
}

TEST_F(ManufacturerLogoShown, NotOfOtherFormats)
{
    test::writeFile(data(U"acme.svg"), R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)");
    EXPECT_EQ(logoOf("acme.svg"), QSize());
}

TEST_F(ManufacturerLogoShown, NotWhenItIsNotThere)
{
    EXPECT_EQ(logoOf("acme.png"), QSize());
}

TEST_F(ManufacturerLogoShown, NeverFromOutsideTheDataFolder)
{
    writeLogo(U"acme.png", 40, 30);
    test::writeFile(folder() / U"secret.png", test::readFile(data(U"acme.png")));
    test::writeFile(data(U"manufacturer_data.json"), R"({"Version": "42", "Last_Modified": "20260301T140559",
        "Manufacturer_7": {"Id": 7, "Last_Modified": "20260301T140559", "Name": "Acme Doors",
                           "Logo": "../secret.png", "Deleted": false}})");
    EXPECT_TRUE(paneOf(0).isVisible());
    EXPECT_FALSE(find<QLabel>("manufacturerLogo")->isVisible());
}

#ifndef _WIN32
TEST_F(ManufacturerLogoShown, NotThroughALink)
{
    writeLogo(U"acme.png", 40, 30);
    test::writeFile(folder() / U"secret.png", test::readFile(data(U"acme.png")));
    ASSERT_EQ(::symlink((folder() / U"secret.png").utf8().c_str(), data(U"link.png").utf8().c_str()), 0);
    EXPECT_EQ(logoOf("link.png"), QSize());
}
#endif

}  // namespace

#include "ManufacturerCardTest.moc"
