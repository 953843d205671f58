#include "host/command/CommandLine.h"
#include "host/support/InstallHost.h"
#include "host/support/System.h"

int main(int argumentCount, char** arguments)
{
    VelkHost::prepareConsole();
    VelkHost::installHost();
    VelkHost::Output output;
    return VelkHost::runVelk(VelkHost::programArguments(argumentCount, arguments), output);
}
