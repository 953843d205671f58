#include <VelkCommon/Imaging/ImageObj.h>

#include <utility>

ImageObj::Editable::Editable(Editable&& other) noexcept : image_(std::exchange(other.image_, nullptr)) {}

ImageObj::Editable& ImageObj::Editable::operator=(Editable&& other) noexcept
{
    image_ = std::exchange(other.image_, nullptr);
    return *this;
}

ImageObj::ImageObj() = default;

ImageObj::ImageObj(QImage image) : image_(std::move(image)) {}

ImageObj::ImageObj(const ImageObj& other) = default;

ImageObj& ImageObj::operator=(const ImageObj& other) = default;

ImageObj::~ImageObj() = default;

ImageObj::Editable ImageObj::edit()
{
    image_.detach();
    return Editable(image_);
}

QSize ImageObj::getSize() const
{
    return image_.size();
}

bool ImageObj::valid() const
{
    return !image_.isNull();
}
