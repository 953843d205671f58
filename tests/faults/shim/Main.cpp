#include "Faulty.h"
#include "Plan.h"

namespace {

using Main = int(int, char**, char**);

Main* programMain = nullptr;

int mainWithFaults(int count, char** arguments, char** environment)
{
    faults::begin();
    return programMain(count, arguments, environment);
}

}  // namespace

extern "C" {

int __libc_start_main(Main* main, int count, char** arguments, void (*init)(), void (*fini)(), void (*loaderFini)(),
                      void* stackEnd)
{
    programMain = main;
    return faults::following<int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*)>("__libc_start_main")(
        mainWithFaults, count, arguments, init, fini, loaderFini, stackEnd);
}

}  // extern "C"
