#include "host/browser/BrowserTest.h"

#include "host/browser/search/SearchPane.h"
#include "host/browser/tree/LibraryDelegate.h"
#include "support/Eventually.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPoint>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QVector>

using VelkHost::Catalog;
using VelkHost::Folder;
using VelkHost::LibraryDelegate;

namespace {

class WindowSearch : public test::BrowserTest
{
protected:
    WindowSearch()
    {
        Catalog catalog;
        catalog.id = "seats";
        catalog.name = "Seats";
        catalog.folders = {{Folder::noParent, "Chairs"}};
        catalog.items = {{"1", 0, "Chair", "", "", {}},
                         {"2", 0, "Armchair \U0001F600 chair", "", "", {}},
                         {"3", 0, "Stool", "chair", "", {}},
                         {"4", 0, "Lamp", "", "", {}}};
        test::writeFile(core(U"seats.calib"), test::catalogFileBytes(catalog));
        openWindow();
    }

    VelkHost::SearchPane& pane() { return *window().searchPane(); }
    QLineEdit& box() { return *named<QLineEdit>("searchBox"); }

    void type(const char* text)
    {
        QTest::keyClicks(&box(), QString::fromLatin1(text));
        test::eventually([this] { return test::hasSearched(window()); });
    }

    QStringList found() { return test::resultRows(pane().model()); }
};

TEST_F(WindowSearch, ShowsHitsInGroupsTheBestFirst)
{
    type("chair");
    EXPECT_TRUE(pane().isVisible());
    EXPECT_EQ(found(), QStringList({QStringLiteral("Items of this name"), QStringLiteral(" Chair"),
                                    QStringLiteral("Items with the word"), QStringLiteral(" Armchair \U0001F600 chair"),
                                    QStringLiteral("Folders that begin with these letters"), QStringLiteral(" Chairs"),
                                    QStringLiteral("Items with the word as a keyword"), QStringLiteral(" Stool")}));
}

TEST_F(WindowSearch, MarksWhatMatches)
{
    type("chair");
    const QModelIndex hit = pane().model().index(0, 0, pane().model().index(1, 0));
    const auto marks = hit.data(LibraryDelegate::MatchesRole).value<QVector<QPoint>>();
    EXPECT_EQ(marks, QVector<QPoint>({{3, 5}, {12, 5}}));  // a smiley takes two of Qt's units
    EXPECT_EQ(hit.data(LibraryDelegate::QuietTextRole).toString(), QStringLiteral("Seats \u203A Chairs"));
}

TEST_F(WindowSearch, TellsHowItWasUnderstood)
{
    type("chair -stool");
    auto* const explanation = named<QLabel>("searchExplanation");
    EXPECT_FALSE(explanation->isVisible());
    QTest::mouseClick(named<QToolButton>("explainButton"), Qt::LeftButton);
    EXPECT_TRUE(explanation->isVisible());
    EXPECT_TRUE(explanation->text().contains(QStringLiteral("1. all of: \"chair\"")))
        << explanation->text().toStdString();
    EXPECT_TRUE(explanation->text().contains(QStringLiteral("none of: \"stool\"")));
}

TEST_F(WindowSearch, CountsItsHits)
{
    type("chair");
    EXPECT_EQ(named<QLabel>("searchSummary")->text(), QStringLiteral("4 hits"));
    box().clear();
    type("lamp");
    EXPECT_EQ(named<QLabel>("searchSummary")->text(), QStringLiteral("1 hit"));
}

TEST_F(WindowSearch, ExplainsTheSyntaxByExamples)
{
    type("chair");
    Q_EMIT named<QLabel>("syntaxLink")->linkActivated(QStringLiteral("syntax"));
    auto* const help = named<QDialog>("syntaxHelp");
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    EXPECT_TRUE(named<QLabel>("syntaxText")->text().contains(QStringLiteral("chair -red")));
    help->close();
}

TEST_F(WindowSearch, SaysSoWhenNothingIsFound)
{
    type("xylophone");
    EXPECT_EQ(found(), QStringList());
    EXPECT_TRUE(named<QLabel>("searchSummary")->text().startsWith(QStringLiteral("Nothing was found")));
}

TEST_F(WindowSearch, GoesBackToTheTreeWhenTheTextIsCleared)
{
    type("chair");
    box().clear();
    EXPECT_TRUE(tree().isVisible());
    EXPECT_FALSE(pane().isVisible());
}

TEST_F(WindowSearch, ShowsTheSelectedHitAndDragsIt)
{
    type("chair");
    const QModelIndex hit = pane().model().index(0, 0, pane().model().index(0, 0));
    pane().view()->setCurrentIndex(hit);
    EXPECT_EQ(named<QLabel>("detailName")->text(), QStringLiteral("Chair"));
    const std::unique_ptr<QMimeData> dragged(pane().model().mimeData({hit}));
    ASSERT_NE(dragged, nullptr);
    EXPECT_EQ(dragged->text(), QStringLiteral("Chair"));
}

TEST_F(WindowSearch, OpensAFoundFolderInTheTree)
{
    type("chairs");
    const QModelIndex folder = pane().model().index(0, 0, pane().model().index(0, 0));
    pane().view()->setCurrentIndex(folder);
    QTest::keyClick(pane().view(), Qt::Key_Return);
    EXPECT_TRUE(tree().isVisible());
    EXPECT_EQ(tree().currentIndex().data().toString(), QStringLiteral("Chairs"));
    EXPECT_TRUE(tree().isExpanded(tree().currentIndex()));
}

TEST_F(WindowSearch, TheNextKeyEndsASearchUnderWay)
{
    QStringList searched;
    QObject::connect(
        &pane().runner(), &VelkHost::SearchRunner::found, &pane(),
        [&](const std::shared_ptr<const VelkHost::SearchOutcome>& outcome) { searched.append(outcome->text); });
    pane().runner().search(QStringLiteral("chair"));
    pane().runner().search(QStringLiteral("lamp"));
    test::eventually([&] { return !searched.isEmpty(); });
    EXPECT_EQ(searched, QStringList(QStringLiteral("lamp")));
}

}  // namespace
