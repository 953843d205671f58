#pragma once

#include <shared_mutex>

namespace VelkHost {

/// Held shared by a worker that has an installed library's file open, and exclusively by one that replaces such a
/// file: not every system lets an open file be replaced. Never taken on the user-interface thread.
inline std::shared_mutex& installedFiles()
{
    static std::shared_mutex mutex;
    return mutex;
}

}  // namespace VelkHost
