#include "ManufacturerWindow.h"

#include "host/browser/manufacturers/ManufacturerEditor.h"
#include "host/installation/DataLock.h"
#include "host/installation/ManufacturerRefresh.h"
#include "host/service/SiteService.h"
#include "support/ScriptedServer.h"
#include "support/SecretAddress.h"
#include "support/Threads.h"

#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <optional>
#include <stop_token>

using testing::HasSubstr;
using VelkHost::ManufacturerEditor;

namespace {

class ManufacturerEditing : public test::ManufacturerWindow
{
protected:
    ManufacturerEditing()
    {
        VelkHost::editDefaultText("Ask us");
        haveCard(7, {{"name", "Acme Doors"},
                     {"url", "https://acme.example"},
                     {"phone", "555 0123"},
                     {"fax", "default"},
                     {"email", "default"},
                     {"logo", "acme.png"}});
    }

    void openEditor()
    {
        paneOf(0);
        QTest::keyClick(&window(), Qt::Key_R, Qt::AltModifier);
        editor_ = dialog<ManufacturerEditor>("manufacturerEditor");
        ASSERT_NE(editor_, nullptr);
    }

    QLineEdit* line(const char* objectName) { return find<QLineEdit>(objectName, editor_); }
    QCheckBox* box(const char* objectName) { return find<QCheckBox>(objectName, editor_); }
    /// Replaces the text of a field, as the user does.
    void enter(const char* field, const char* text)
    {
        line(field)->setFocus();
        line(field)->selectAll();
        test::typeText(line(field), QString::fromUtf8(text));
    }
    void accept()
    {
        QTest::keyClick(line("cardName"), Qt::Key_Return);
        settle();
    }

    /// A member of the saved card.
    QJsonValue saved(const char* member) const
    {
        const QJsonObject root =
            QJsonDocument::fromJson(QByteArray::fromStdString(test::readFile(data(U"manufacturer_data.json"))))
                .object();
        return root[QStringLiteral("Manufacturer_7")].toObject()[QString::fromLatin1(member)];
    }
    std::string savedText(const char* member) const { return saved(member).toString().toStdString(); }

    ManufacturerEditor* editor_ = nullptr;
};

TEST_F(ManufacturerEditing, ShowsTheCard)
{
    openEditor();
    EXPECT_EQ(line("cardName")->text(), QStringLiteral("Acme Doors"));
    EXPECT_EQ(line("cardUrl")->text(), QStringLiteral("https://acme.example"));
    EXPECT_EQ(line("cardPhone")->text(), QStringLiteral("555 0123"));
    EXPECT_FALSE(box("cardPhoneDefault")->isChecked());
    EXPECT_TRUE(box("cardFaxDefault")->isChecked());
    EXPECT_EQ(line("cardFax")->text(), QString());
    EXPECT_EQ(line("cardFax")->placeholderText(), QStringLiteral("Ask us"));
    EXPECT_FALSE(line("cardFax")->isEnabled());
    EXPECT_EQ(line("cardLogo")->text(), QStringLiteral("acme.png"));
    EXPECT_FALSE(box("cardDeleted")->isChecked());
}

TEST_F(ManufacturerEditing, SavesAndShowsWhatWasEntered)
{
    openEditor();
    enter("cardUrl", "https://t\u00FCr.example");
    box("cardPhoneDefault")->click();
    box("cardEmailDefault")->click();
    EXPECT_TRUE(line("cardEmail")->isEnabled());
    enter("cardEmail", "sales@acme.example");
    box("cardDeleted")->click();
    accept();
    EXPECT_EQ(window().findChild<ManufacturerEditor*>(), nullptr);
    EXPECT_EQ(savedText("Url"), "https://t\u00FCr.example");
    EXPECT_EQ(savedText("Phone"), "default");
    EXPECT_EQ(savedText("Fax"), "default");
    EXPECT_EQ(savedText("Email"), "sales@acme.example");
    EXPECT_TRUE(saved("Deleted").toBool());
    EXPECT_EQ(shownText("manufacturerPhone"), "Ask us");
    EXPECT_EQ(shownText("manufacturerWithdrawn"), "This manufacturer was withdrawn.");
    EXPECT_THAT(shownText("manufacturerEmail").value_or(""), HasSubstr("mailto:sales@acme.example"));
}

TEST_F(ManufacturerEditing, WritesNothingWithoutAChange)
{
    openEditor();
    const std::string before = test::readFile(data(U"manufacturer_data.json"));
    accept();
    EXPECT_EQ(window().findChild<ManufacturerEditor*>(), nullptr);
    EXPECT_EQ(test::readFile(data(U"manufacturer_data.json")), before);
}

TEST_F(ManufacturerEditing, WritesNothingWhenCancelled)
{
    openEditor();
    const std::string before = test::readFile(data(U"manufacturer_data.json"));
    enter("cardName", "Other");
    QTest::keyClick(line("cardName"), Qt::Key_Escape);
    settle();
    EXPECT_EQ(window().findChild<ManufacturerEditor*>(), nullptr);
    EXPECT_EQ(test::readFile(data(U"manufacturer_data.json")), before);
}

TEST_F(ManufacturerEditing, StaysOpenWhenItCannotSave)
{
    openEditor();
    enter("cardLogo", "../acme.png");
    accept();
    ASSERT_TRUE(editor_->isVisible());
    const auto* const problem = find<QLabel>("cardProblem", editor_);
    EXPECT_THAT(problem->text().toStdString(), HasSubstr("\"../acme.png\" is not a safe name for a logo"));
    EXPECT_TRUE(problem->isVisible());
    EXPECT_EQ(problem->textFormat(), Qt::PlainText);
    EXPECT_EQ(line("cardLogo")->text(), QStringLiteral("../acme.png")) << "the entered text is not lost";
    enter("cardLogo", "new.png");
    accept();
    EXPECT_EQ(window().findChild<ManufacturerEditor*>(), nullptr);
    EXPECT_EQ(savedText("Logo"), "new.png");
}

TEST_F(ManufacturerEditing, IsOpenedFromTheMenu)
{
    open();
    EXPECT_FALSE(find<QAction>("editManufacturerAction")->isEnabled());
    select("Doors", 0);
    ASSERT_TRUE(find<QAction>("editManufacturerAction")->isEnabled());
    find<QAction>("editManufacturerAction")->trigger();
    EXPECT_NE(dialog<ManufacturerEditor>("manufacturerEditor"), nullptr);
}

TEST_F(ManufacturerEditing, HidesTheCardOfSomeoneRenamed)
{
    openEditor();
    enter("cardName", "Nobody");
    accept();
    EXPECT_FALSE(pane().isVisible());
    EXPECT_FALSE(find<QAction>("editManufacturerAction")->isEnabled());
}

// ---- Refreshing ----------------------------------------------------------------------------------

class ManufacturerRefreshing : public test::ManufacturerWindow
{
protected:
    ManufacturerRefreshing()
    {
        test::writeCatalogFile(input(U"core/a.calib"), "A");
        test::writeFileDeep(input(U"manufacturer_data.json"), R"({"Version": "42",
            "Last_Modified": "20260301T140559", "Default_Text": "Ask the service",
            "Manufacturer_7": {"Id": 7, "Last_Modified": "20260301T140559", "Name": "Acme Doors",
                               "Phone": "default", "Logo": "acme.png", "Deleted": false}})");
        writeLogo(U"acme.png", 20, 10);
        test::writeFileDeep(input(U"logos/acme.png"), test::readFile(data(U"acme.png")));
        publish();
        VelkHost::ServiceOptions options;
        options.site = site();
        service_ = std::make_unique<VelkHost::SiteService>(options);
        clearData();
    }

    void clearData() const { std::remove(data(U"acme.png").utf8().c_str()); }

    void refresh()
    {
        auto* const action = find<QAction>("refreshManufacturersAction");
        ASSERT_TRUE(action->isEnabled());
        action->trigger();
        EXPECT_FALSE(action->isEnabled()) << "one at a time";
        settle();
        EXPECT_TRUE(action->isEnabled());
    }

    std::unique_ptr<VelkHost::SiteService> service_;
};

TEST_F(ManufacturerRefreshing, BringsCardsAndLogos)
{
    EXPECT_FALSE(paneOf(0, {{}, service_->address()}).isVisible());
    refresh();
    EXPECT_EQ(status().toStdString(), "Manufacturers: 1 new, 0 changed, 0 gone.");
    settle();
    EXPECT_EQ(shownText("manufacturerName"), "Acme Doors");
    EXPECT_EQ(shownText("manufacturerPhone"), "Ask the service");
    EXPECT_TRUE(find<QLabel>("manufacturerLogo")->isVisible());
    refresh();
    EXPECT_EQ(status().toStdString(), "The manufacturers are up to date.");
}

TEST_F(ManufacturerRefreshing, LeavesNewerCards)
{
    haveCard(7, {{"name", "Acme Doors"}, {"phone", "1"}});
    paneOf(0, {{}, service_->address()});
    refresh();
    EXPECT_EQ(status().toStdString(), "The service has nothing newer about the manufacturers.");
    EXPECT_EQ(shownText("manufacturerPhone"), "1");
}

TEST_F(ManufacturerRefreshing, SaysWhatFailed)
{
    const std::string address = service_->address();
    service_.reset();
    paneOf(0, {{}, address});
    refresh();
    EXPECT_THAT(status().toStdString(),
                HasSubstr("The manufacturers are as they were: " + address + "manufacturers: "));
}

TEST_F(ManufacturerRefreshing, RefusesTextsThatAreNotAddresses)
{
    paneOf(0, {{}, "file:///etc/"});
    refresh();
    EXPECT_EQ(status().toStdString(), "The manufacturers are as they were: \"file:///etc/\" is not a web address");
}

TEST_F(ManufacturerRefreshing, ShowsNoPassword)
{
    const std::string before = "The manufacturers are as they were: ";
    paneOf(0, {{}, test::withPassword("ftp://host/")});
    refresh();
    EXPECT_EQ(status().toStdString(), before + "\"ftp://host/\" is not a web address");
    const std::string address = service_->address();
    service_.reset();
    paneOf(0, {{}, test::withPassword(address)});
    refresh();
    EXPECT_THAT(status().toStdString(), testing::AllOf(testing::StartsWith(before + address + "manufacturers: "),
                                                       testing::Not(HasSubstr(test::password))));
}

// Another program has the lock when the user saves a card and closes the window.
TEST_F(ManufacturerRefreshing, DoesNotLoseAnEditOfAWindowThatIsClosed)
{
    haveCard(1, {{"name", "Acme"}});
    paneOf(0);
    std::optional<FileLock> lock = VelkHost::lockFile(data(U"manufacturer_data.json"), "a test");
    window().manufacturers().edit(1, {{{"phone", "555 0123"}}, {}, false});
    const test::Thread releasing([&lock] { lock.reset(); });
    window().finishSaving();
    EXPECT_EQ(VelkHost::installedManufacturers().cards.at(1).getManufacturerPhoneNumber(false), U"555 0123");
}

TEST_F(ManufacturerRefreshing, CanBeStopped)
{
    std::stop_source source;
    source.request_stop();
    const auto stopped =
        VelkHost::refreshManufacturers(service_->manufacturersAddress(), service_->logoAddress(), source.get_token());
    EXPECT_EQ(stopped.outcome, VelkHost::ManufacturerRefresh::Outcome::Stopped);
    EXPECT_EQ(stopped.cards, 0U);
    EXPECT_THAT(VelkHost::installedManufacturers().cards, testing::IsEmpty());
}

// Otherwise the missing logos would never be asked for again.
TEST_F(ManufacturerRefreshing, BringsAllNextTimeWhenItWasStopped)
{
    std::stop_source source;
    test::ScriptedServer server;
    server.on("/manufacturers", test::Reply{.body = test::readFile(input(U"manufacturer_data.json"))});
    server.on("/logos", [&](const test::SeenRequest&) {
        source.request_stop();
        return test::Reply::never();
    });
    const auto stopped =
        VelkHost::refreshManufacturers(server.url("/manufacturers"), server.url("/logos?a=b"), source.get_token());
    EXPECT_TRUE(source.stop_requested());
    EXPECT_EQ(stopped.outcome, VelkHost::ManufacturerRefresh::Outcome::Stopped);
    EXPECT_THAT(stopped.changes, testing::IsEmpty());
    const auto again = VelkHost::refreshManufacturers(service_->manufacturersAddress(), service_->logoAddress());
    EXPECT_EQ(again.changes.size(), 1U);
    EXPECT_TRUE(data(U"acme.png").pathExists());
}

TEST_F(ManufacturerRefreshing, EndsWithTheWindow)
{
    test::ScriptedServer server;
    for (const bool hasData : {false, true}) {  // while it waits for the data, and while it waits for a logo
        server.forgetRequests();
        server.on("/manufacturers", hasData ? test::Reply{.body = test::readFile(input(U"manufacturer_data.json"))}
                                            : test::Reply::never());
        server.on("/logo", test::Reply::never());
        paneOf(0, {{}, server.url("/")});
        find<QAction>("refreshManufacturersAction")->trigger();
        server.waitForRequests(hasData ? 2 : 1);
        close();  // would take a minute
        EXPECT_EQ(server.requests("/manufacturers").size(), 1U) << "the data is downloaded once";
    }
}

TEST_F(ManufacturerRefreshing, NeedsAService)
{
    open();
    EXPECT_FALSE(find<QAction>("refreshManufacturersAction")->isEnabled());
    EXPECT_THAT(find<QAction>("refreshManufacturersAction")->statusTip().toStdString(), HasSubstr("--service"));
}

}  // namespace
