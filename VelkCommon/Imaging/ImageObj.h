#pragma once

#include <VelkCommon/Export.h>

#include <QImage>
#include <QSize>

/// An image: a value whose copies share their pixels until one of them is edited, so copying is cheap.
/// Needs no display. Different objects may be used by different threads at the same time, even if they are
/// copies of each other.
class VELKCOMMON_EXPORT ImageObj
{
public:
    /// A handle that gives the right to change one image; edit() makes it. The image must be neither moved nor
    /// destroyed while the handle exists.
    class VELKCOMMON_EXPORT Editable
    {
    public:
        /// Takes the right over from `other`, which must not be used to change the image any more.
        /// @{
        Editable(Editable&& other) noexcept;
        Editable& operator=(Editable&& other) noexcept;
        /// @}
        Editable(const Editable&) = delete;
        Editable& operator=(const Editable&) = delete;
        ~Editable() = default;

        /// The image behind the handle, to paint on or to replace; copies of the ImageObj keep their
        /// pixels. Must not be called on a handle that was moved from.
        QImage& image() const noexcept { return *image_; }

    private:
        friend class ImageObj;
        explicit Editable(QImage& image) noexcept : image_(&image) {}

        QImage* image_;  // null once moved from
    };

    /// An image that is not valid.
    ImageObj();
    /// An image with these pixels; a null image is not valid.
    explicit ImageObj(QImage image);
    /// Shares the pixels.
    /// @{
    ImageObj(const ImageObj& other);
    ImageObj& operator=(const ImageObj& other);
    /// @}
    virtual ~ImageObj();

    /// A handle that changes this image.
    Editable edit();

    /// Width and height in pixels; 0 by 0 for an image that is not valid.
    QSize getSize() const;

    /// Whether there is an image.
    bool valid() const;

    /// The pixels; a null image for one that is not valid. Valid until the object changes.
    const QImage& image() const noexcept { return image_; }

private:
    QImage image_;
};
