// What an open file is on every system.
#include <VelkCommon/Platform/Platform.h>

#include <utility>

namespace Velk::Platform {

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

}  // namespace Velk::Platform
