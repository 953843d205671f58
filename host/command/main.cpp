#include "host/command/CommandLine.h"
#include "host/support/ExitCode.h"
#include "host/support/InstallHost.h"
#include "host/support/System.h"

#include <cstdlib>
#include <exception>
#include <new>

namespace {

/// Where nobody caught an exception, at the program's start for example, or where an exception's own handling ran out
/// of memory: says what happened in one line that needs no memory. Files are as they are after a crash, which nothing
/// that the program writes depends on.
[[noreturn]] void giveUp() noexcept
{
    const char* what = "velk: unexpected failure\n";
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        what = "velk: out of memory\n";
    } catch (...) {
        // There is no more to be told without memory.
    }
    VelkHost::writeToError(what);
    std::_Exit(static_cast<int>(VelkHost::ExitCode::BuildFailed));
}

[[maybe_unused]] const std::terminate_handler previous = std::set_terminate(giveUp);

}  // namespace

int main(int argumentCount, char** arguments)
{
    VelkHost::prepareConsole();
    VelkHost::installHost();
    VelkHost::Output output;
    return VelkHost::runVelk(VelkHost::programArguments(argumentCount, arguments), output);
}
