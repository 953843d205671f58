#pragma once

// Only the functions that it replaces are seen from outside.
#pragma GCC visibility push(hidden)

namespace faults {

/// The folder whose files count, before the first call counts.
void watch(const char* folder);

/// Whether calls on a file count.
bool isWatched(int descriptor);
bool isWatched(const char* path);
bool isWatched(int folder, const char* path);

}  // namespace faults

#pragma GCC visibility pop
