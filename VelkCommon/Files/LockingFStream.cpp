#include <VelkCommon/Files/LockingFStream.h>

#include <VelkCommon/Files/detail/LockPatience.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/FileSystem.h>

#include <algorithm>
#include <cstring>
#include <streambuf>
#include <string>
#include <vector>

namespace Platform = Velk::Platform;

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;

}  // namespace

// Works in one direction at a time: a reader has a get area, a writer a put area. Besides the get area, the
// original bytes of the file are kept, because positions count those.
class LockingFStream::Buffer : public std::streambuf
{
public:
    Buffer(std::ios& stream, const fileString& path, int openMode)
        : stream_(stream),
          writing_((openMode & out) != 0),
          translate_(Platform::linesEndWithCarriageReturn && (openMode & binary) == 0)
    {
        if (!isKnownMode(openMode))
            return;
        using Lock = Platform::File::Lock;
        if (!Velk::detail::openLockedPatiently(file_, path, writing_ ? Lock::exclusive : Lock::shared))
            return;
        if (writing_ && !file_.truncate()) {
            file_.close();
            return;
        }
        // Only what is used: filling both with zeros would take as long as reading a small file.
        if (!writing_)
            block_.resize(bufferSize);
        if (writing_ || translate_)
            text_.resize(bufferSize);
        if (writing_)
            setp(text_.data(), text_.data() + text_.size());
    }

    ~Buffer() override { close(); }

    bool isOpen() const noexcept { return file_.isOpen(); }

    bool close()
    {
        if (!isOpen())
            return true;
        const bool flushed = flush();
        setg(nullptr, nullptr, nullptr);
        setp(nullptr, nullptr);
        return file_.close() && flushed;
    }

protected:
    int_type underflow() override
    {
        if (!isOpen() || writing_)
            return traits_type::eof();
        do {
            if (!fill())
                return traits_type::eof();
        } while (gptr() == egptr());
        return traits_type::to_int_type(*gptr());
    }

    int_type overflow(int_type character) override
    {
        if (!isOpen() || !writing_ || !flush())
            return traits_type::eof();
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(character);
            pbump(1);
        }
        return traits_type::not_eof(character);
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override
    {
        if (translate_ || size < epptr() - pptr() || !isOpen() || !writing_)
            return std::streambuf::xsputn(text, size);
        return flush() && put(text, static_cast<std::size_t>(size)) ? size : 0;
    }

    int sync() override { return flush() ? 0 : -1; }

    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode) override
    {
        if (!isOpen() || (writing_ && !flush()))
            return pos_type(off_type(-1));
        off_type base = 0;
        if (from == std::ios_base::cur)
            base = position();
        else if (from == std::ios_base::end)
            base = file_.size();
        if (from == std::ios_base::cur && offset == 0)
            return base;
        return moveTo(base + offset);
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode) override
    {
        if (!isOpen() || (writing_ && !flush()))
            return pos_type(off_type(-1));
        return moveTo(position);
    }

private:
    // A caller may pass a standard library's mode, which has more flags: one for appending must not empty a file.
    static bool isKnownMode(int openMode)
    {
        const int direction = openMode & ~binary;
        return direction == in || direction == out;
    }

    // Reads the next block of the file; false at its end.
    bool fill()
    {
        blockBegin_ += static_cast<off_type>(blockSize_);
        blockSize_ = 0;
        const long long got = file_.read(block_.data(), block_.size());
        blockSize_ = static_cast<std::size_t>(std::max(got, 0LL));
        // Stream iterators read the buffer without the stream and would take a read error for the end of the file.
        if (got < 0 || !keepLineEndsWhole())
            stream_.setstate(std::ios_base::badbit);
        const std::size_t size = translate_ ? toLines() : blockSize_;
        char* begin = translate_ ? text_.data() : block_.data();
        setg(begin, begin, begin + size);
        return blockSize_ > 0;
    }

    // A carriage return at the end of a block waits for the line feed that may follow.
    bool keepLineEndsWhole()
    {
        if (!translate_ || blockSize_ < block_.size() || block_.back() != '\r')
            return true;
        --blockSize_;
        return file_.seek(blockBegin_ + static_cast<off_type>(blockSize_));
    }

    bool beginsLineEnd(std::size_t index) const
    {
        return block_[index] == '\r' && index + 1 < blockSize_ && block_[index + 1] == '\n';
    }

    std::size_t toLines()
    {
        std::size_t size = 0;
        for (std::size_t i = 0; i < blockSize_; ++i)
            if (!beginsLineEnd(i))
                text_[size++] = block_[i];
        return size;
    }

    // Where in the file the next character is read or written.
    off_type position() const
    {
        if (writing_)
            return blockBegin_;
        auto characters = static_cast<std::size_t>(gptr() - eback());
        if (!translate_)
            return blockBegin_ + static_cast<off_type>(characters);
        std::size_t index = 0;
        for (; characters > 0; ++index)
            if (!beginsLineEnd(index))
                --characters;
        return blockBegin_ + static_cast<off_type>(index);
    }

    pos_type moveTo(off_type position)
    {
        if (position < 0 || !file_.seek(position))
            return pos_type(off_type(-1));
        blockBegin_ = position;
        blockSize_ = 0;
        if (!writing_)
            setg(nullptr, nullptr, nullptr);
        return position;
    }

    // Writes the put area. Bytes that cannot be written are dropped, so that they are not tried again.
    bool flush()
    {
        if (!writing_ || pbase() == nullptr)
            return true;
        const auto size = static_cast<std::size_t>(pptr() - pbase());
        setp(text_.data(), text_.data() + text_.size());
        if (!translate_)
            return put(text_.data(), size);
        std::string lines;
        lines.reserve(size + size / 8);
        for (std::size_t i = 0; i < size; ++i)
            if (text_[i] == '\n')
                lines += "\r\n";
            else
                lines += text_[i];
        return put(lines.data(), lines.size());
    }

    bool put(const char* bytes, std::size_t size)
    {
        if (!file_.write(bytes, size))
            return false;
        blockBegin_ += static_cast<off_type>(size);
        return true;
    }

    std::ios& stream_;
    Platform::File file_;
    bool writing_;
    bool translate_;
    std::vector<char> block_;  // the bytes of the file from blockBegin_ on
    std::vector<char> text_;   // the same with line ends converted, or the text to write
    off_type blockBegin_ = 0;  // for a writer: where in the file the put area begins
    std::size_t blockSize_ = 0;
};

LockingFStream::LockingFStream(const fileString& path, int openMode)
    : std::iostream(nullptr), buffer_(std::make_unique<Buffer>(*this, path, openMode))
{
    rdbuf(buffer_.get());
    if (!buffer_->isOpen())
        setstate(failbit);
}

LockingFStream::~LockingFStream() = default;

bool LockingFStream::isOpen() const noexcept
{
    return buffer_->isOpen();
}

void LockingFStream::close()
{
    if (!buffer_->close())
        setstate(failbit);
}
