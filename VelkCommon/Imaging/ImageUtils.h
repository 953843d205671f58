#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Imaging/ImageObj.h>

#include <QPixmap>

/// Operations on images.
class VELKCOMMON_EXPORT ImageUtils
{
public:
    ImageUtils() = delete;

    /// The longest side, in pixels, that resize() makes.
    static constexpr int longestSide = 16384;

    /// Scales the image behind `image` smoothly to `width` by `height` pixels; with `keepAspectRatio`, to
    /// the largest size that fits with the image's own proportions, at least one pixel each way. Returns false
    /// and changes nothing for a side below 1 or above `longestSide`, for an image that is not valid, and
    /// when there is not enough memory. Any thread, one at a time per image.
    static bool resize(ImageObj::Editable&& image, int width, int height, bool keepAspectRatio);

    /// The image in the form that is drawn on the screen; a null pixmap for an image that is not valid. Throws
    /// EnforcerException when there is no QGuiApplication. User-interface thread.
    static QPixmap imageObjToBMP(const ImageObj& image);
};
