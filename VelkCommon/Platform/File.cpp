// The part of an open file that is the same on every system.
#include <VelkCommon/Platform/File.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Velk::Platform {
namespace {

constexpr std::size_t copyBlock = std::size_t{1} << 20;

}  // namespace

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

File& File::operator=(File&& other) noexcept
{
    std::swap(handle_, other.handle_);
    return *this;
}

File::~File()
{
    if (isOpen())
        close();
}

// A system cannot copy between every pair of files, and some report 0 copied bytes for files whose size they do
// not know. So the rest is always read in the ordinary way; likewise below.
bool File::copyFrom(File& source)
{
    copyBySystem(source);
    std::vector<char> block(copyBlock);
    for (;;) {
        const long long got = source.read(block.data(), block.size());
        if (got <= 0)
            return got == 0;
        if (!write(block.data(), static_cast<std::size_t>(got)))
            return false;
    }
}

bool File::copyRange(File& source, long long offset, long long size)
{
    long long done = copyBySystem(source, offset, size);
    std::vector<char> block(static_cast<std::size_t>(std::min(size - done, static_cast<long long>(copyBlock))));
    while (done < size) {
        const long long request = std::min(size - done, static_cast<long long>(block.size()));
        if (source.readAt(offset + done, block.data(), static_cast<std::size_t>(request)) != request ||
            !write(block.data(), static_cast<std::size_t>(request)))
            return false;
        done += request;
    }
    return true;
}

}  // namespace Velk::Platform
