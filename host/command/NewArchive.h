#pragma once

#include <zip.h>

#include <memory>

namespace VelkHost {

struct DiscardArchive
{
    void operator()(zip_t* archive) const { zip_discard(archive); }
};

/// An archive being written; what is not closed by zip_close() before its end is given up.
using NewArchive = std::unique_ptr<zip_t, DiscardArchive>;

}  // namespace VelkHost
