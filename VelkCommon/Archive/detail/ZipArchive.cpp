#include <VelkCommon/Archive/detail/ZipArchive.h>

#include <VelkCommon/Archive/detail/ZipFormat.h>

#include <algorithm>
#include <utility>

namespace Velk::detail {
namespace {

// One window holds the headers of many small entries; for large entries, reading it costs little in comparison.
constexpr std::size_t windowSize = 4096;

/// Whether `text` begins with a data descriptor of the given form that matches `entry`. Descriptors are
/// written with or without a signature and with lengths of 32 or 64 bits, and nothing says which.
bool isDescriptor(std::string_view text, const ZipEntry& entry, bool hasSignature, bool wide)
{
    const std::size_t crc = hasSignature ? 4 : 0;
    const std::size_t sizes = crc + 4;
    if (text.size() < sizes + (wide ? 16 : 8))
        return false;
    if (hasSignature && zip::read32(text, 0) != zip::descriptor::signature)
        return false;
    if (zip::read32(text, crc) != entry.crc)
        return false;
    if (wide)
        return zip::read64(text, sizes) == entry.compressedSize && zip::read64(text, sizes + 8) == entry.size;
    return zip::read32(text, sizes) == entry.compressedSize && zip::read32(text, sizes + 4) == entry.size;
}

}  // namespace

std::unique_ptr<ZipArchive> ZipArchive::open(const fileString& path)
{
    auto file = Platform::File::open(path.utf8(), Platform::File::Mode::read);
    if (!file.isOpen())
        return nullptr;
    auto directory = ZipDirectory::read(file);
    if (!directory)
        return nullptr;
    return std::unique_ptr<ZipArchive>(new ZipArchive(std::move(file), std::move(*directory)));
}

ZipArchive::ZipArchive(Platform::File file, ZipDirectory directory)
    : file_(std::move(file)), directory_(std::move(directory))
{}

const ZipEntry* ZipArchive::find(const fileString& name)
{
    if (byName_.empty())
        for (const ZipEntry& entry : directory_.entries())
            byName_[directory_.name(entry).utf8()] = &entry;
    const auto found = byName_.find(name.utf8());
    return found != byName_.end() ? found->second : nullptr;
}

std::optional<ZipExtent> ZipArchive::extent(const ZipEntry& entry)
{
    const std::string_view header = view(entry.begin, zip::local::size);
    if (header.size() < zip::local::size || zip::read32(header, 0) != zip::local::signature)
        return std::nullopt;
    const std::uint64_t names = zip::read16(header, zip::local::nameSize) + zip::read16(header, zip::local::extraSize);
    const bool hasDescriptor = (zip::read16(header, zip::local::flags) & zip::flag::descriptor) != 0;
    ZipExtent extent;
    extent.begin = entry.begin;
    extent.dataBegin = entry.begin + zip::local::size + names;
    extent.dataEnd = extent.dataBegin + entry.compressedSize;
    if (extent.dataEnd > entry.limit)
        return std::nullopt;
    extent.end = extent.dataEnd + (hasDescriptor ? descriptorSize(entry, extent.dataEnd) : 0);
    return extent;
}

void ZipArchive::close() noexcept
{
    if (file_.isOpen())
        file_.close();
}

// The `size` bytes from `begin` on, or as many of them as the file has. Valid until the next call.
std::string_view ZipArchive::view(std::uint64_t begin, std::size_t size)
{
    const bool inWindow = begin >= windowBegin_ && begin - windowBegin_ <= window_.size() &&
                          window_.size() - (begin - windowBegin_) >= size;
    if (!inWindow) {
        window_.resize(windowSize);
        const long long got = file_.readAt(static_cast<long long>(begin), window_.data(), window_.size());
        window_.resize(static_cast<std::size_t>(std::max(got, 0LL)));
        windowBegin_ = begin;
    }
    return std::string_view(window_).substr(static_cast<std::size_t>(begin - windowBegin_), size);
}

// Where no descriptor matches the directory, the bytes up to the next record still count as one if they are few
// enough to be nothing else.
std::uint64_t ZipArchive::descriptorSize(const ZipEntry& entry, std::uint64_t begin)
{
    const std::uint64_t room = entry.limit - begin;
    const std::string_view text =
        view(begin, static_cast<std::size_t>(std::min<std::uint64_t>(zip::descriptor::maximumSize, room)));
    for (const bool hasSignature : {true, false})
        for (const bool wide : {false, true})
            if (isDescriptor(text, entry, hasSignature, wide))
                return (hasSignature ? 8 : 4) + (wide ? 16 : 8);
    return room <= zip::descriptor::maximumSize ? room : 0;
}

}  // namespace Velk::detail
