#include <VelkCommon/Network/detail/Body.h>

#include <VelkCommon/Files/detail/DiskReserve.h>
#include <VelkCommon/Platform/Process.h>

#include <curl/curl.h>

#include <algorithm>
#include <utility>

namespace Velk::detail {
namespace {

constexpr std::size_t writtenAtOnce = 256 << 10;
constexpr std::uint64_t writtenBetweenLooks = 16 << 20;  // bytes between two checks of the free space

std::string tooLarge(std::uint64_t limit)
{
    return "The answer is larger than " + std::to_string(limit) + " bytes";
}

}  // namespace

bool Body::fail(unsigned int code, std::string reason)
{
    failure_ = {code, std::move(reason)};
    return false;
}

bool TextBody::begin(std::optional<std::uint64_t> declared)
{
    text_.clear();
    return declared.value_or(0) <= limit_ || fail(CURLE_FILESIZE_EXCEEDED, tooLarge(limit_));
}

bool TextBody::take(std::string_view bytes)
{
    if (bytes.size() > limit_ - text_.size())
        return fail(CURLE_FILESIZE_EXCEEDED, tooLarge(limit_));
    text_ += bytes;
    return true;
}

FileBody::FileBody(fileString target, std::optional<std::uint64_t> limit) : target_(std::move(target)), limit_(limit) {}

bool FileBody::begin(std::optional<std::uint64_t> declared)
{
    if (limit_ && declared.value_or(0) > *limit_)
        return fail(CURLE_FILESIZE_EXCEEDED, tooLarge(*limit_));
    if (!hasRoomFor(declared.value_or(0)))
        return false;
    file_.emplace(target_);
    return file_->isOpen() || failWriting();
}

bool FileBody::take(std::string_view bytes)
{
    taken_ += bytes.size();
    if (limit_ && taken_ > *limit_)
        return fail(CURLE_FILESIZE_EXCEEDED, tooLarge(*limit_));
    buffer_ += bytes;
    return buffer_.size() < writtenAtOnce || write();
}

bool FileBody::end()
{
    return write() && (file_->commit() || failWriting());
}

bool FileBody::write()
{
    if (room_ < buffer_.size() && !hasRoomFor(buffer_.size()))
        return false;
    room_ -= buffer_.size();
    if (!file_->write(buffer_))
        return failWriting();
    buffer_.clear();
    return true;
}

bool FileBody::hasRoomFor(std::uint64_t bytes)
{
    const std::uint64_t usable = roomOnDisk(target_);
    if (bytes > usable)
        return fail(CURLE_WRITE_ERROR, "Too little space is left on the disk for " + target_.humanReadableString());
    room_ = std::min(usable, writtenBetweenLooks);
    return true;
}

bool FileBody::failWriting()
{
    const std::string why = Platform::lastErrorText();
    return fail(CURLE_WRITE_ERROR, "Cannot write " + target_.humanReadableString() + ": " + why);
}

}  // namespace Velk::detail
