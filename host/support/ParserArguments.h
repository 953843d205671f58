#pragma once

#include <string>
#include <vector>

/// @file
/// How arguments pass the command line's parser unchanged. It would take "[a,b]" for a list and drop "%%", so such
/// arguments go in disguise, and whoever uses a text that it filled in takes the disguise off.

namespace VelkHost {

/// The arguments as the parser takes them: the last one first, and in disguise where they need one.
std::vector<std::string> toParser(const std::vector<std::string>& arguments);

/// The argument as it was typed.
std::string fromParser(const std::string& argument);

}  // namespace VelkHost
