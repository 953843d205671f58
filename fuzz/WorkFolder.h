#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace fuzz {

/// Where a target keeps its files: in memory where there is such a file system, or else among the temporary files.
/// What the parsers write is synced, and on a disk that takes nearly all of a target's time.
inline std::filesystem::path workFolder()
{
    const std::filesystem::path inMemory = "/dev/shm";
    return std::filesystem::is_directory(inMemory) ? inMemory : std::filesystem::temp_directory_path();
}

/// A new path there.
inline std::filesystem::path workPath(const std::string& extension = {})
{
    return workFolder() / ("velk-fuzz-" + std::to_string(std::random_device{}()) + extension);
}

/// A folder of the target's own, which lasts as long as the object.
class OwnFolder
{
public:
    OwnFolder() { std::filesystem::create_directory(path_); }
    ~OwnFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_ = workPath();
};

}  // namespace fuzz
