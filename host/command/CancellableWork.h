#pragma once

#include <functional>

namespace VelkHost {

class Output;

/// Does the work of a command that Ctrl-C may cancel, and prints what went wrong. Returns the exit code:
/// Success; BuildFailed for a FileError or DataError, Cancelled for Interrupted. Other exceptions pass through.
int runCancellable(Output& output, const std::function<void()>& work);

}  // namespace VelkHost
