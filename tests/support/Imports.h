#pragma once

/// @file
/// Where a library of ours calls another one. Only on Windows.

namespace test {

/// From now on our libraries call `replacement` where they would call the other library's function of that (mangled)
/// name.
void redirectImports(const char* name, void (*replacement)());

}  // namespace test
