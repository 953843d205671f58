#include <VelkCommon/Imaging/ImageUtils.h>

#include <VelkCommon/Reporting/EnforcerThrow.h>
#include <VelkCommon/Reporting/detail/ReportPlaces.h>

#include <QGuiApplication>

#include <utility>

namespace {

bool isSide(int pixels)
{
    return pixels >= 1 && pixels <= ImageUtils::longestSide;
}

QSize targetSize(const QSize& current, int width, int height, bool keepAspectRatio)
{
    const QSize wanted(width, height);
    return keepAspectRatio ? current.scaled(wanted, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)) : wanted;
}

}  // namespace

bool ImageUtils::resize(ImageObj::Editable&& image, int width, int height, bool keepAspectRatio)
{
    QImage& pixels = image.image();
    if (pixels.isNull() || !isSide(width) || !isSide(height))
        return false;
    const QSize size = targetSize(pixels.size(), width, height, keepAspectRatio);
    QImage scaled = pixels.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (scaled.size() != size)
        return false;
    pixels = std::move(scaled);
    return true;
}

QPixmap ImageUtils::imageObjToBMP(const ImageObj& image)
{
    // Qt ends the process when a pixmap is made without the application object.
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        EnforcerThrow("!qGuiApp", Velk::detail::places::pixmapWithoutApplication);
    return image.valid() ? QPixmap::fromImage(image.image()) : QPixmap();
}
