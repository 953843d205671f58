#pragma once

#include "host/support/ExitCode.h"

#include <functional>

namespace VelkHost {

class Output;

/// Does the work of a command on filters or manufacturers and returns its exit code. Prints the text of a
/// DataError or a FileError, and then returns DataFailed. Other exceptions pass through.
ExitCode runOnData(Output& output, const std::function<ExitCode()>& work);

}  // namespace VelkHost
