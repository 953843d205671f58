#pragma once

#include <VelkCommon/Files/detail/DiskReserve.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace test {

/// Makes the disk seem to have little room while the object lives. Only one may exist at a time.
class SmallDisk
{
public:
    /// The disk always has this many bytes beyond the reserve, however much is written.
    explicit SmallDisk(std::uint64_t room) : SmallDisk(room, {}) {}
    /// The disk has this many bytes beyond the reserve, less those that the files in `folder` take.
    SmallDisk(std::uint64_t room, const fileString& folder)
    {
        room_ = room;
        folder_ = folder.utf8();
        Velk::detail::setFreeSpaceQuery(&freeSpace);
    }
    ~SmallDisk() { Velk::detail::setFreeSpaceQuery(nullptr); }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

private:
    static std::optional<std::uint64_t> freeSpace(const std::string&) noexcept
    {
        const std::uint64_t all = Velk::detail::diskReserve + room_;
        const std::uint64_t taken = bytesIn(folder_);
        return taken < all ? all - taken : 0;
    }

    static std::uint64_t bytesIn(const std::string& folder) noexcept
    {
        std::uint64_t bytes = 0;
        std::error_code error;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            bytes += entry->is_regular_file(error) ? entry->file_size(error) : 0;
        return bytes;
    }

    static inline std::uint64_t room_ = 0;
    static inline std::string folder_;
};

}  // namespace test
