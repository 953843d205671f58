#include <VelkCommon/Archive/detail/ZipEntryReader.h>

#include <VelkCommon/Archive/detail/ZipFormat.h>

#include <algorithm>
#include <new>
#include <utility>

#include <libdeflate.h>
#include <zlib.h>

namespace Velk::detail {
namespace {

constexpr std::size_t inputSize = std::size_t{1} << 18;
// The most bytes that one deflated byte can expand to.
constexpr std::uint64_t maximumExpansion = 1032;

bool isReadable(const ZipEntry& entry) noexcept
{
    if ((entry.flags & zip::flag::encrypted) != 0)
        return false;
    if (entry.method == zip::method::stored)
        return entry.size == entry.compressedSize;
    return entry.method == zip::method::deflated && entry.size / maximumExpansion <= entry.compressedSize;
}

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

bool inflateWhole(const std::vector<unsigned char>& compressed, std::vector<unsigned char>& bytes)
{
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(libdeflate_alloc_decompressor());
    if (!decompressor)
        throw std::bad_alloc();
    // The null pointer for the actual length makes the call fail unless that length is the declared one.
    return libdeflate_deflate_decompress(decompressor.get(), compressed.data(), compressed.size(), bytes.data(),
                                         bytes.size(), nullptr) == LIBDEFLATE_SUCCESS;
}

bool readRange(ZipArchive& archive, std::uint64_t begin, std::vector<unsigned char>& bytes)
{
    return archive.file().readAt(static_cast<long long>(begin), reinterpret_cast<char*>(bytes.data()), bytes.size()) ==
           static_cast<long long>(bytes.size());
}

}  // namespace

struct ZipEntryReader::Inflater
{
    Inflater() : input(inputSize)
    {
        // Raw deflated data, without a header.
        if (::inflateInit2(&stream, -MAX_WBITS) != Z_OK)
            throw std::bad_alloc();
    }
    ~Inflater() { ::inflateEnd(&stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    std::vector<unsigned char> input;
    z_stream stream = {};
    bool ended = false;
};

ZipEntryReader::ZipEntryReader(std::shared_ptr<ZipArchive> archive, const ZipEntry& entry)
    : archive_(std::move(archive)), entry_(entry)
{
    if (!start())
        state_ = State::failed;
    else if (entry_.size == 0)
        read(nullptr, 0);
}

ZipEntryReader::~ZipEntryReader() = default;

bool ZipEntryReader::start()
{
    const auto extent = isReadable(entry_) ? archive_->extent(entry_) : std::nullopt;
    if (!extent)
        return false;
    position_ = extent->dataBegin;
    dataEnd_ = extent->dataEnd;
    if (entry_.method == zip::method::deflated)
        inflater_ = std::make_unique<Inflater>();
    return true;
}

std::size_t ZipEntryReader::read(unsigned char* bytes, std::size_t size)
{
    if (state_ != State::reading)
        return 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, remaining()));
    const std::size_t got = produce(bytes, wanted);
    if (got > 0)
        crc_ = libdeflate_crc32(crc_, bytes, got);
    done_ += got;
    if (got < wanted)
        state_ = State::failed;
    else if (remaining() == 0)
        state_ = isAtEnd() && crc_ == entry_.crc ? State::whole : State::failed;
    return got;
}

std::size_t ZipEntryReader::produce(unsigned char* bytes, std::size_t size)
{
    if (!inflater_) {
        const long long got =
            archive_->file().readAt(static_cast<long long>(position_), reinterpret_cast<char*>(bytes), size);
        position_ += static_cast<std::uint64_t>(std::max(got, 0LL));
        return static_cast<std::size_t>(std::max(got, 0LL));
    }
    z_stream& stream = inflater_->stream;
    stream.next_out = bytes;
    stream.avail_out = static_cast<uInt>(size);
    while (stream.avail_out > 0 && !inflater_->ended) {
        // Even when the input is used up, more output may still come.
        if (stream.avail_in == 0)
            fillInput();
        const int result = ::inflate(&stream, Z_NO_FLUSH);
        inflater_->ended = result == Z_STREAM_END;
        if (result != Z_OK && result != Z_STREAM_END)
            break;
    }
    return size - stream.avail_out;
}

// Whether the data ends where the declared size says.
bool ZipEntryReader::isAtEnd()
{
    if (!inflater_)
        return position_ == dataEnd_;
    unsigned char surplus = 0;
    return produce(&surplus, 1) == 0 && inflater_->ended;
}

void ZipEntryReader::fillInput()
{
    std::vector<unsigned char>& input = inflater_->input;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(input.size(), dataEnd_ - position_));
    const long long got =
        archive_->file().readAt(static_cast<long long>(position_), reinterpret_cast<char*>(input.data()), size);
    if (got <= 0)
        return;
    position_ += static_cast<std::uint64_t>(got);
    inflater_->stream.next_in = input.data();
    inflater_->stream.avail_in = static_cast<uInt>(got);
}

std::optional<std::vector<unsigned char>> readWholeEntry(ZipArchive& archive, const ZipEntry& entry)
{
    const auto extent = isReadable(entry) ? archive.extent(entry) : std::nullopt;
    if (!extent)
        return std::nullopt;
    std::vector<unsigned char> bytes(static_cast<std::size_t>(entry.compressedSize));
    if (!readRange(archive, extent->dataBegin, bytes))
        return std::nullopt;
    if (entry.method == zip::method::deflated) {
        const std::vector<unsigned char> compressed =
            std::exchange(bytes, std::vector<unsigned char>(static_cast<std::size_t>(entry.size)));
        if (!inflateWhole(compressed, bytes))
            return std::nullopt;
    }
    if (libdeflate_crc32(0, bytes.data(), bytes.size()) != entry.crc)
        return std::nullopt;
    return bytes;
}

}  // namespace Velk::detail
