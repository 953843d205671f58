#include "host/command/CommandLine.h"
#include "host/support/ExitCode.h"
#include "host/support/InstallHost.h"
#include "host/support/LastWords.h"
#include "host/support/System.h"

#include <exception>

namespace {

// Before main(), as what runs until then may throw, too.
[[maybe_unused]] const std::terminate_handler previous = VelkHost::endWith(
    {"velk: out of memory\n", "velk: unexpected failure\n", static_cast<int>(VelkHost::ExitCode::BuildFailed)});

}  // namespace

int main(int argumentCount, char** arguments)
{
    VelkHost::prepareConsole();
    VelkHost::installHost();
    VelkHost::Output output;
    return VelkHost::runVelk(VelkHost::programArguments(argumentCount, arguments), output);
}
