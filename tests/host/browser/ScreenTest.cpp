// The pictures when the window moves to a screen of another density.
#include "host/browser/LabelPicture.h"
#include "host/browser/filters/FilteredWindow.h"

#include "host/browser/tree/LibraryDelegate.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTreeView>
#include <QWindow>

using VelkHost::LibraryDelegate;

namespace {

constexpr int largeSide = 512;

std::string largePicture()
{
    QImage image(largeSide, largeSide, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QBuffer png;
    image.save(&png, "PNG");
    return png.data().toStdString();
}

/// A window that can be on a screen of any density.
class MovingWindow : public VelkHost::BrowserWindow
{
public:
    int density = 1;

protected:
    int metric(PaintDeviceMetric which) const override
    {
        if (which == PdmDevicePixelRatio)
            return density;
        if (which == PdmDevicePixelRatioScaled)
            return static_cast<int>(density * devicePixelRatioFScale());
        return BrowserWindow::metric(which);
    }
};

class WindowOnScreens : public test::FilteredWindow
{
protected:
    WindowOnScreens()
    {
        install("Doors", VelkHost::LibraryKind::Core, {{"d1", 0, "A door", "", largePicture(), {}}});
        QSignalSpy read(&window_, &VelkHost::BrowserWindow::librariesRead);
        window_.show();
        window_.readLibraries();
        eventually([&] { return !read.isEmpty(); });
        window_.reveal({folder() / U"core" / U"Doors.calib", false, 0});
    }

    QPixmap rowPicture()
    {
        return window_.model().data(window_.tree()->currentIndex(), Qt::DecorationRole).value<QPixmap>();
    }
    QPixmap largePictureShown()
    {
        return test::labelPicture(*window_.findChild<QLabel*>(QStringLiteral("detailPicture")));
    }
    /// Checks how many pixels the pictures in the row and beside it have.
    void expectPixels(int ofRow, int beside)
    {
        eventually([&] { return rowPicture().width() == ofRow && largePictureShown().width() == beside; });
    }

    MovingWindow window_;
};

TEST_F(WindowOnScreens, ShowsPicturesInTheScreensPixels)
{
    expectPixels(32, 192);
    window_.density = 2;
    Q_EMIT window_.windowHandle()->screenChanged(QGuiApplication::primaryScreen());
    expectPixels(64, 384);
    EXPECT_EQ(largePictureShown().devicePixelRatio(), 2.0);
    window_.density = 1;
    Q_EMIT window_.windowHandle()->screenChanged(QGuiApplication::primaryScreen());
    expectPixels(32, 192);
}

}  // namespace
