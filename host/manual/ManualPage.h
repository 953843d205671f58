#pragma once

#include "host/manual/ProgramDescription.h"

#include <string>
#include <vector>

namespace VelkHost {

/// The page of section 1 for a program, as man(7) has it: all of its help, with that of its commands. `version` is the
/// program's, and `others` are programs with pages of their own to see as well.
std::string manualPage(const CommandDescription& program, const std::string& version,
                       const std::vector<std::string>& others);

}  // namespace VelkHost
