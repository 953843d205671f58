#include "host/command/CancellableWork.h"

#include "host/catalog/CatalogError.h"
#include "host/support/ExitCode.h"
#include "host/support/Output.h"
#include "host/support/ShownProgress.h"

namespace VelkHost {

int runCancellable(Output& output, const std::function<void()>& work)
{
    try {
        work();
        return static_cast<int>(ExitCode::Success);
    } catch (const CatalogError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::BuildFailed);
    } catch (const Interrupted&) {
        output.error("cancelled");
        return static_cast<int>(ExitCode::Cancelled);
    }
}

}  // namespace VelkHost
