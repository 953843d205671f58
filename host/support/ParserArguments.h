#pragma once

#include <string>
#include <vector>

/// @file
/// How arguments pass the command line's parser unchanged. The parser would split "[a,b]" as a list and drop "%%", so
/// such arguments pass in disguise, and whoever uses a text that the parser filled in takes the disguise off.

namespace VelkHost {

/// The arguments as the parser takes them: the last one first, and in disguise where they need one.
std::vector<std::string> toParser(const std::vector<std::string>& arguments);

/// Takes the disguise off: the argument as it was typed.
std::string fromParser(const std::string& argument);

}  // namespace VelkHost
