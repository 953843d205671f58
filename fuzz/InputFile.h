#pragma once

#include <VelkCommon/Files/fileString.h>

#include "WorkFolder.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace fuzz {

/// The input as a file, for readers that take a path. There is one per process, which each input overwrites.
class InputFile
{
public:
    explicit InputFile(const std::string& extension) : path_(workPath(extension).string()) {}
    ~InputFile() { std::remove(path_.c_str()); }

    fileString write(const std::uint8_t* data, std::size_t size) const
    {
        std::FILE* const file = std::fopen(path_.c_str(), "wb");
        if (file == nullptr || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0)
            std::abort();
        return fileString(path_);
    }

private:
    std::string path_;
};

}  // namespace fuzz
