#include "host/browser/BrowserTest.h"

#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

namespace {

class LibraryDrop : public test::BrowserTest
{
protected:
    LibraryDrop() { openWindow(); }

    fileString library(const std::u32string& name) const
    {
        test::writeCatalogFile(folder() / U"files" / name, "Tree");
        return folder() / U"files" / name;
    }

    /// Sends one event of a drag with these files; true when it is accepted.
    bool drag(QWidget* over, QEvent::Type type, const std::vector<fileString>& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const fileString& file : files)
            urls.append(QUrl::fromLocalFile(qtPath(file)));
        data.setUrls(urls);
        const QPoint place(20, 20);
        if (type == QEvent::DragEnter)
            return accepted(over, QDragEnterEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
        if (type == QEvent::DragMove)
            return accepted(over, QDragMoveEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
        return accepted(over, QDropEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
    }

    bool isHighlighted() { return named<QWidget>("dropHighlight")->isVisible(); }

private:
    template <typename Event>
    static bool accepted(QWidget* over, Event event)
    {
        event.ignore();
        QApplication::sendEvent(over, &event);
        return event.isAccepted();
    }
};

TEST_F(LibraryDrop, ImportsWhatIsDropped)
{
    const std::vector<fileString> files{library(U"a.calib"), library(U"b.calib")};
    EXPECT_FALSE(isHighlighted());
    EXPECT_TRUE(drag(&window(), QEvent::DragEnter, files));
    EXPECT_TRUE(drag(&window(), QEvent::DragMove, files));
    EXPECT_TRUE(isHighlighted());
    EXPECT_TRUE(drag(&window(), QEvent::Drop, files));
    EXPECT_FALSE(isHighlighted());
    EXPECT_TRUE(window().jobs().isRunning());
    waitForJob();
    EXPECT_EQ(message(), "2 libraries were imported.");
    EXPECT_THAT(test::listFolder(folder() / U"user"), testing::ElementsAre("a.calib", "b.calib"));
}

TEST_F(LibraryDrop, TakesFilesOnTheSearchBoxToo)
{
    auto* const box = named<QLineEdit>("searchBox");
    const std::vector<fileString> files{library(U"a.calib")};
    EXPECT_TRUE(drag(box, QEvent::DragEnter, files));
    EXPECT_TRUE(drag(box, QEvent::Drop, files));
    waitForJob();
    EXPECT_EQ(box->text(), QString());
    EXPECT_TRUE(user(U"a.calib").pathExists());
}

TEST_F(LibraryDrop, RefusesOtherFiles)
{
    const std::vector<fileString> files{library(U"a.calib"), folder() / U"a.txt"};
    EXPECT_FALSE(drag(&window(), QEvent::DragEnter, files));
    EXPECT_FALSE(isHighlighted());
    EXPECT_FALSE(drag(&window(), QEvent::DragEnter, {}));
    EXPECT_FALSE(window().jobs().isRunning());
}

TEST_F(LibraryDrop, ForgetsWhatGoesAway)
{
    EXPECT_TRUE(drag(&window(), QEvent::DragEnter, {library(U"a.calib")}));
    QDragLeaveEvent leave;
    QApplication::sendEvent(&window(), &leave);
    EXPECT_FALSE(isHighlighted());
}

TEST_F(LibraryDrop, WaitsForTheRunningJob)
{
    const fileString second = library(U"b.calib");
    const fileString first = library(U"a.calib");
    EXPECT_TRUE(drag(&window(), QEvent::DragEnter, {first}));
    EXPECT_TRUE(drag(&window(), QEvent::Drop, {first}));
    EXPECT_FALSE(drag(&window(), QEvent::DragEnter, {second}));
    waitForJob();
    EXPECT_FALSE(user(U"b.calib").pathExists());
    EXPECT_TRUE(drag(&window(), QEvent::DragEnter, {second}));
}

}  // namespace
