#include "host/command/CancellableWork.h"

#include "host/installation/DataError.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/Output.h"
#include "host/support/ShownProgress.h"
#include "host/support/System.h"

namespace VelkHost {

int runCancellable(Output& output, const std::function<void()>& work)
{
    watchInterrupts();  // before anything is made that would be left behind
    try {
        work();
        return static_cast<int>(ExitCode::Success);
    } catch (const FileError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    } catch (const DataError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    } catch (const Interrupted&) {
        output.error("cancelled");
        return static_cast<int>(ExitCode::Cancelled);
    }
}

}  // namespace VelkHost
